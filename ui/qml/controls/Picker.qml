import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator

/// A choice that is a row of a form: its label, what is chosen, and a menu of all options.
T.ComboBox {
    id: root

    required property string label
    required property var options
    required property string choice

    signal chosen(string option)

    model: options
    currentIndex: options.indexOf(choice)
    onActivated: index => root.chosen(root.textAt(index))
    implicitHeight: Math.max(Theme.target, implicitContentHeight + 24)
    leftPadding: Theme.padding
    rightPadding: Theme.padding
    focusPolicy: Qt.TabFocus
    Accessible.name: label
    Keys.onReturnPressed: popup.open()
    Keys.onEnterPressed: popup.open()

    contentItem: PickerValue {
        label: root.label
        choice: root.choice
        pressed: root.down
    }
    indicator: null
    background: Item {
        FocusRing {
            visible: root.visualFocus
            anchors.margins: 2
        }
    }
    delegate: PickerOption { }
    popup: T.Popup {
        x: Theme.mirrored ? Theme.spacing : root.width - width - Theme.spacing
        y: root.height - 4
        width: 170 * Theme.textScale
        height: implicitContentHeight + topPadding + bottomPadding
        padding: 4
        modal: true
        dim: false

        contentItem: PickerMenu {
            choice: root.choice
            model: root.delegateModel
            currentIndex: root.highlightedIndex
            Accessible.name: root.label
        }
        background: Rectangle {
            radius: Theme.cornerRadius + 4
            color: Theme.menu
            border.width: 1
            border.color: Theme.separator
        }
        enter: Transition {
            NumberAnimation {
                property: "opacity"
                from: 0
                to: 1
                duration: Theme.quick
            }
        }
        exit: Transition {
            NumberAnimation {
                property: "opacity"
                to: 0
                duration: Theme.quick
            }
        }
    }

    RowSeparator { }
}
