import QtQuick
import MirrowvaleAuthenticator

/// The edit menu of a text. Few ever need one, so it is made at the first time.
Loader {
    /// The toolkit's texts of one line and of many share no type.
    required property var field

    function openAt(x: real, y: real): void {
        if (!item) {
            setSource("EditMenu.qml", { parent: field, field: field })
        }
        const menu = item as EditMenu
        menu.openAt(x, y)
    }
}
