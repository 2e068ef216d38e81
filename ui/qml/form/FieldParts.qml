import QtQuick
import MirrowvaleAuthenticator

/// What a field has besides its text: its name while it is empty, an edit menu, and a place to drop a text on.
DropArea {
    id: root

    /// The toolkit's fields of one line and of many share no type.
    required property var field

    // A field of many lines clears its selection at a press of the right button, too.
    property point selection

    /// Brings up the edit menu. Few ever need one, so it is made at the first time.
    function openMenu(x: real, y: real): void {
        if (!menu.item) {
            menu.setSource("EditMenu.qml", { parent: field, field: field })
        }
        (menu.item as EditMenu).openAt(x, y)
    }

    anchors.fill: parent
    keys: ["text/plain"]
    onDropped: drop => {
        drop.accept(Qt.CopyAction) // the text stays where it was dragged from
        field.forceActiveFocus(Qt.MouseFocusReason)
        field.insert(field.positionAt(drop.x, drop.y), drop.text)
    }

    Text {
        anchors { fill: parent; leftMargin: Theme.padding; rightMargin: Theme.padding; topMargin: root.field.topPadding }
        visible: root.field.length === 0 && root.field.preeditText.length === 0
        text: root.field.placeholder
        font: Theme.body
        color: Theme.placeholder
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.smallestText
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: root.field.verticalAlignment
    }

    Loader {
        id: menu
    }

    Connections {
        target: root.field

        function onPressed(event: var): void {
            root.selection = Qt.point(root.field.selectionStart, root.field.selectionEnd)
        }

        function onPressAndHold(event: var): void {
            root.openMenu(event.x, event.y)
        }

        function onReleased(event: var): void {
            if (event.button === Qt.RightButton) {
                root.field.forceActiveFocus(Qt.MouseFocusReason)
                if (root.selection.x < root.selection.y) {
                    root.field.select(root.selection.x, root.selection.y)
                }
                root.openMenu(event.x, event.y)
            }
        }
    }

    Shortcut {
        sequences: ["Menu", "Shift+F10"]
        enabled: root.field.activeFocus
        onActivated: {
            const caret = root.field.cursorRectangle
            root.openMenu(caret.x, caret.y + caret.height / 2)
        }
    }
}
