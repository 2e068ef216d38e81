import QtQuick
import MirrowvaleAuthenticator

/// A code, in digits of one width, from left to right in every language. A long press or a double click selects
/// it; Ctrl+C then copies it. It leaves dragging to what lies around it.
TextInput {
    id: root

    required property string code

    /// The selection follows the code to its next value.
    property bool selected: false

    signal selectionStarted

    function selectCode() {
        select(1, length)
    }

    function clearSelection() {
        selected = false
        deselect()
        focus = false
    }

    // A mark that has no width leads the code, and is not selected: without a letter, a text runs in the direction of
    // the keyboard's language, which can put the code's second half first.
    text: "\u200e" + code
    font: Theme.code
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
    onSelectionStartChanged: if (selected && selectionStart === 0) selectCode()
    Keys.onEscapePressed: event => {
        event.accepted = selected
        clearSelection()
    }

    MouseArea {
        function start() {
            root.selected = true
            root.selectCode()
            root.forceActiveFocus(Qt.MouseFocusReason)
            root.selectionStarted()
        }

        anchors.fill: parent
        onPressAndHold: start()
        onDoubleClicked: start()
    }
}
