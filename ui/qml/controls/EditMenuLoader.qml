import QtQuick
import MirrowvaleAuthenticator

/// Brings up a field's edit menu where the field is held, or clicked with the other button. Few fields ever need one,
/// so it is made at the first time.
Loader {
    id: root

    /// The toolkit's fields of one line and of many share no type.
    required property var field

    function openAt(x: real, y: real): void {
        if (!item) {
            setSource("EditMenu.qml", { parent: field, field: field })
        }
        const menu = item as EditMenu
        menu.openAt(x, y)
    }

    Connections {
        target: root.field

        function onPressAndHold(event: var): void {
            root.openAt(event.x, event.y)
        }

        function onReleased(event: var): void {
            if (event.button === Qt.RightButton) {
                root.field.forceActiveFocus(Qt.MouseFocusReason)
                root.openAt(event.x, event.y)
            }
        }
    }
}
