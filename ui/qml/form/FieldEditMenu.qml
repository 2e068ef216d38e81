import QtQuick
import MirrowvaleAuthenticator

/// Brings up a field's edit menu where the field is held, or clicked with the right button, or by the menu's keys. Few
/// ever need one, so it is made at the first time.
Loader {
    id: root

    /// The toolkit's fields of one line and of many share no type.
    required property var field

    // A field of many lines clears its selection at a press of the right button, too.
    property point selection

    function openAt(x: real, y: real): void {
        if (!item) {
            setSource("EditMenu.qml", { parent: field, field: field })
        }
        const menu = item as EditMenu
        menu.openAt(x, y)
    }

    Connections {
        target: root.field

        function onPressed(event: var): void {
            root.selection = Qt.point(root.field.selectionStart, root.field.selectionEnd)
        }

        function onPressAndHold(event: var): void {
            root.openAt(event.x, event.y)
        }

        function onReleased(event: var): void {
            if (event.button === Qt.RightButton) {
                root.field.forceActiveFocus(Qt.MouseFocusReason)
                if (root.selection.x < root.selection.y) {
                    root.field.select(root.selection.x, root.selection.y)
                }
                root.openAt(event.x, event.y)
            }
        }
    }

    Shortcut {
        sequences: ["Menu", "Shift+F10"]
        enabled: root.field.activeFocus
        onActivated: {
            const caret = root.field.cursorRectangle
            root.openAt(caret.x, caret.y + caret.height / 2)
        }
    }
}
