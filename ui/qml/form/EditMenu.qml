import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Desktop

/// What can be done with a field's text without a keyboard. It leaves focus in the field.
PopupMenu {
    id: root

    /// The toolkit's fields of one line and of many share no type.
    required property var field

    readonly property bool masked: field.echoMode !== undefined && field.echoMode !== TextInput.Normal
    readonly property int selectionLength: field.selectionEnd - field.selectionStart
    readonly property bool canTake: selectionLength > 0 && !masked

    readonly property Flickable scrolling: flickableAround(field.parent)

    function flickableAround(item: Item): Flickable {
        return item === null || item instanceof Flickable ? item as Flickable : flickableAround(item.parent)
    }

    /// Opens beside the line of text at a place of the field.
    function openAt(x: real, y: real): void {
        const lineHeight = field.cursorRectangle.height
        openBeside(Qt.rect(x, y - lineHeight / 2, 0, lineHeight))
    }

    prefersAbove: true
    closePolicy: T.Popup.CloseOnPressOutside

    MenuEntry {
        menu: root
        text: qsTr("Cut")
        enabled: root.canTake
        onChosen: {
            Pasteboard.setString(root.field.selectedText)
            root.field.remove(root.field.selectionStart, root.field.selectionEnd)
        }
    }

    MenuEntry {
        menu: root
        text: qsTr("Copy")
        enabled: root.canTake
        onChosen: Pasteboard.setString(root.field.selectedText)
    }

    MenuEntry {
        menu: root
        text: qsTr("Paste")
        enabled: root.field.canPaste
        onChosen: root.field.paste()
    }

    MenuEntry {
        menu: root
        text: qsTr("Select All")
        enabled: root.selectionLength < root.field.length
        onChosen: root.field.selectAll()
    }

    Connections {
        target: root.field

        function onActiveFocusChanged(): void {
            root.close()
        }

        function onTextChanged(): void {
            root.close()
        }

        function onCursorPositionChanged(): void {
            root.close()
        }
    }

    Connections {
        target: root.scrolling

        function onContentYChanged(): void {
            root.close()
        }
    }

    Shortcut {
        sequences: ["Escape"]
        enabled: root.visible
        onActivated: root.close()
    }
}
