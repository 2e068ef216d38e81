pragma ComponentBehavior: Bound

import QtQuick
import MirrowvaleAuthenticator

/// A choice that is a row of a form: its label, what is chosen, and a menu of all options.
PlainButton {
    id: root

    required text
    /// What is chosen.
    required subject
    required property var options

    signal chosen(string option)

    readonly property real besideLabel: choice.implicitWidth + 4 + chevrons.width + Theme.spacing

    /// Whether the choice is below the label, having no space beside it.
    readonly property bool stacked: label.implicitWidth + besideLabel > width - 2 * Theme.padding

    opensMenu: true
    implicitHeight: Math.max(Theme.target, label.height + (stacked ? 4 + choice.height : 0) + 24)
    focusRing.anchors.margins: 2
    onClicked: choices.openFrom(root, Qt.rect(0, 0, width, height))

    WholeText {
        id: label

        anchors {
            left: parent.left
            leftMargin: Theme.padding
            verticalCenter: parent.verticalCenter
            verticalCenterOffset: root.stacked ? -(choice.height + 4) / 2 : 0
        }
        width: root.width - 2 * Theme.padding - (root.stacked ? 0 : root.besideLabel)
        text: root.text
        font: Theme.body
    }

    Text {
        id: choice

        anchors {
            right: chevrons.left
            rightMargin: 4
            verticalCenter: parent.verticalCenter
            verticalCenterOffset: root.stacked ? (label.height + 4) / 2 : 0
        }
        text: root.subject
        textFormat: Text.PlainText
        font: Theme.body
        color: Theme.secondary
        opacity: root.down || choices.visible ? 0.5 : 1
    }

    Symbol {
        id: chevrons

        anchors { right: parent.right; rightMargin: Theme.padding; verticalCenter: choice.verticalCenter }
        size: 16 * Theme.textScale
        name: "chevron.up.chevron.down"
        color: Theme.secondary
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
                checked: root.subject === modelData
                onChosen: root.chosen(modelData)
            }
        }
    }
}
