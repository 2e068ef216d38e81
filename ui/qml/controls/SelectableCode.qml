import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Desktop

/// A code, in digits of one width, from left to right in every language. A long press or a double click selects
/// it; Ctrl+C or the menu of a long press then copies it. It leaves dragging to what lies around it.
TextInput {
    id: root

    required property string code

    // A text without a letter runs in the direction of the keyboard's language, which can put the second half of the
    // code first. A mark of no width (LEFT-TO-RIGHT MARK) prevents that, and stays out of the selection.
    readonly property string mark: InputMethod.inputDirection === Qt.RightToLeft ? "\u200e" : ""

    /// The width that the code must not exceed.
    required property real room

    /// The selection follows the code to its next value.
    property bool selected: false

    signal selectionStarted

    /// Focus, which came with the selection, is to go back to where it belongs.
    signal selectionEnded

    function selectCode() {
        select(mark.length, length)
    }

    function clearSelection() {
        selected = false
        deselect()
        if (focus) {
            selectionEnded()
        }
    }

    text: mark + code
    font: Theme.codeFitting(code.length, room)
    color: Theme.primary
    selectedTextColor: Theme.primary
    selectionColor: Theme.selection
    readOnly: true
    selectByMouse: false
    activeFocusOnPress: false
    activeFocusOnTab: false
    cursorVisible: false
    persistentSelection: true
    onTextChanged: if (selected) selectCode()
    onSelectionStartChanged: if (selected && selectionStart < mark.length) selectCode()
    // An arrow key clears the selection, which is to last until Escape or a press elsewhere.
    onSelectedTextChanged: if (selected && selectedText.length === 0) selectCode()
    Keys.onEscapePressed: event => {
        event.accepted = selected
        clearSelection()
    }
    Keys.onPressed: event => {
        // The toolkit's own copy lacks the mark that keeps it out of clipboard histories.
        event.accepted = event.matches(StandardKey.Copy)
        if (event.accepted && selectedText.length > 0) {
            Pasteboard.setString(selectedText)
        }
    }

    EditMenuLoader {
        id: menu

        field: root
    }

    MouseArea {
        function start() {
            root.selected = true
            root.selectCode()
            root.forceActiveFocus(Qt.MouseFocusReason)
            root.selectionStarted()
        }

        anchors.fill: parent
        onPressAndHold: mouse => {
            start()
            menu.openAt(mouse.x, mouse.y)
        }
        onDoubleClicked: start()
    }
}
