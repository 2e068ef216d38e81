import QtQuick

/// Inserts a text that is dropped on a field, and gives the field focus. The text stays where it was dragged from.
DropArea {
    id: root

    /// The toolkit's fields of one line and of many share no type.
    required property var field

    anchors.fill: parent
    keys: ["text/plain"]
    onDropped: drop => {
        drop.accept(Qt.CopyAction)
        field.forceActiveFocus(Qt.MouseFocusReason)
        field.insert(field.positionAt(drop.x, drop.y), drop.text)
    }
}
