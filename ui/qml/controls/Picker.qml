pragma ComponentBehavior: Bound

import QtQuick
import MirrowvaleAuthenticator

/// A choice that is a row of a form: its label, what is chosen, and a menu of all options.
PlainButton {
    id: root

    required property string label
    required property var options
    required property string choice

    signal chosen(string option)

    text: label
    subject: choice
    opensMenu: true
    implicitHeight: Math.max(Theme.target, value.implicitHeight + 24)
    focusRing.anchors.margins: 2
    onClicked: choices.openFrom(root, Qt.rect(0, 0, width, height))

    PickerValue {
        id: value

        anchors { fill: parent; leftMargin: Theme.padding; rightMargin: Theme.padding }
        label: root.label
        choice: root.choice
        pressed: root.down || choices.visible
    }

    PopupMenu {
        id: choices

        x: Theme.mirrored ? Theme.spacing : root.width - width - Theme.spacing

        Repeater {
            model: root.options

            MenuEntry {
                required property string modelData

                menu: choices
                text: modelData
                checkable: true
                checked: root.choice === modelData
                onChosen: root.chosen(modelData)
            }
        }
    }
}
