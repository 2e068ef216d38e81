import QtQuick
import MirrowvaleAuthenticator

/// Brings up a field's edit menu where the field is held, or clicked with the right button.
EditMenuLoader {
    id: root

    // A field of many lines clears its selection at a press of the right button, too.
    property point selection

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
}
