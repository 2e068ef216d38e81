import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator

/// All options of a picker, over what lies around it.
T.Popup {
    id: root

    required property var options
    required property string choice

    /// The width that the menu must not exceed.
    required property real room

    signal chosen(string option)

    width: Math.min(170 * Theme.textScale, room)
    height: implicitContentHeight + 2 * padding
    margins: Theme.spacing
    padding: 4
    modal: true
    dim: false
    focus: true

    contentItem: PickerList {
        options: root.options
        choice: root.choice
        onChosen: option => {
            root.close()
            root.chosen(option)
        }
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
