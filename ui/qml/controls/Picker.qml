import QtQuick
import MirrowvaleAuthenticator

/// A choice that is a row of a form: its label, what is chosen, and a menu of all options.
PlainButton {
    id: root

    required property string label
    required property var options
    required property string choice

    /// Whether the focus ring showed here when the menu came up, and is to show again after it.
    property bool hadVisualFocus: false

    signal chosen(string option)

    text: label
    subject: choice
    opensMenu: true
    implicitHeight: Math.max(Theme.target, implicitContentHeight + 24)
    leftPadding: Theme.padding
    rightPadding: Theme.padding
    focusRing.anchors.margins: 2
    onClicked: {
        hadVisualFocus = visualFocus
        menu.open()
    }

    contentItem: PickerValue {
        label: root.label
        choice: root.choice
        pressed: root.down || menu.visible
    }

    PopupMenu {
        id: menu

        readonly property Item focused: root.Window.activeFocusItem
        readonly property bool focusIsElsewhere: focused !== null && focused !== root.Window.contentItem

        x: Theme.mirrored ? Theme.spacing : root.width - width - Theme.spacing
        y: root.height - 4
        width: Math.min(170 * Theme.textScale, root.width)
        modal: true
        dim: false
        focus: true
        onActiveFocusChanged: if (!activeFocus) close()
        onClosed: {
            if (root.enabled && !focusIsElsewhere) {
                root.forceActiveFocus(Qt.PopupFocusReason)
                root.visualFocus = root.hadVisualFocus
            }
        }

        contentItem: PickerList {
            options: root.options
            choice: root.choice
            onChosen: option => {
                menu.close()
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

    RowSeparator { }
}
