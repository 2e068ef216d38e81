import QtQuick
import MirrowvaleAuthenticator

/// A code, in digits of one width, from left to right in every language. A long press or a double click selects
/// it; Ctrl+C then copies it. It leaves dragging to what lies around it.
TextInput {
    id: root

    /// The width that the code must not exceed.
    required property real room

    /// The selection follows the code to its next value.
    property bool selected: false

    signal selectionStarted

    function clearSelection() {
        selected = false
        deselect()
        focus = false
    }

    font: Theme.codeFitting(length, room)
    color: Theme.primary
    selectedTextColor: Theme.primary
    selectionColor: Theme.selection
    readOnly: true
    selectByMouse: false
    activeFocusOnPress: false
    activeFocusOnTab: false
    cursorVisible: false
    persistentSelection: true
    onTextChanged: if (selected) selectAll()
    Keys.onEscapePressed: event => {
        event.accepted = selected
        clearSelection()
    }

    MouseArea {
        function start() {
            root.selected = true
            root.selectAll()
            root.forceActiveFocus(Qt.MouseFocusReason)
            root.selectionStarted()
        }

        anchors.fill: parent
        onPressAndHold: start()
        onDoubleClicked: start()
    }
}
