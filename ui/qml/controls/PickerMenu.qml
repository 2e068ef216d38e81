import QtQuick
import MirrowvaleAuthenticator

/// All options of a picker, over what lies around it.
PopupMenu {
    id: root

    required property var options
    required property string choice

    /// The width that the menu must not exceed.
    required property real room

    signal chosen(string option)

    width: Math.min(170 * Theme.textScale, room)
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
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.quick
        }
    }
}
