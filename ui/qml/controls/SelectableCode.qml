import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Desktop

/// A code, in digits of one width, from left to right in every language. A double click or a long press selects it, a
/// mouse that is dragged over it what it passes; Ctrl+C then copies that. A finger's drag is left to what lies around it.
TextInput {
    id: root

    required property string code

    // A text without a letter runs in the direction of the keyboard's language, which can put the second half of the
    // code first. A LEFT-TO-RIGHT MARK, of no width, prevents that, and is never selected.
    readonly property string mark: InputMethod.inputDirection === Qt.RightToLeft ? "\u200e" : ""

    /// The width that the code must not exceed.
    required property real room

    /// What is selected, in characters of the code. The selection follows the code to its next value.
    property int from: 0
    property int to: 0
    readonly property bool selected: from < to

    /// The right button was clicked, or the code is held.
    ///
    /// @param place  where, from its left edge
    signal menuRequested(real place)

    /// Focus, which came with the selection, is to go back to where it belongs. The selection goes with it.
    signal selectionEnded

    function selectRange(first: int, last: int): void {
        from = first
        to = last
        select(mark.length + from, mark.length + to)
    }

    function start(first: int, last: int): void {
        forceActiveFocus(Qt.MouseFocusReason)
        selectRange(first, last)
    }

    function selectAll(): void {
        start(0, code.length)
    }

    /// Forgets the selection, wherever the focus is.
    function forget(): void {
        from = 0
        to = 0
        deselect()
    }

    text: mark + code
    font: Theme.codeFitting(code.length, room)
    // The digits' own: the mark may be of another font, with higher lines.
    height: Math.ceil(Theme.codeMetrics.height * font.pixelSize / Theme.code.pixelSize)
    autoScroll: false // those are cut off above and below alike
    verticalAlignment: TextInput.AlignVCenter
    color: Theme.primary
    selectedTextColor: Theme.primary
    selectionColor: Theme.selection
    readOnly: true
    selectByMouse: false
    activeFocusOnPress: false
    activeFocusOnTab: false
    cursorVisible: false
    persistentSelection: true
    onFocusChanged: if (!focus) forget()
    onTextChanged: if (selected) selectRange(from, to)
    onSelectionStartChanged: if (selected && selectionStart < mark.length) selectRange(from, to)
    // An arrow key clears the selection, which is to last until Escape or a press elsewhere.
    onSelectedTextChanged: if (selected && selectedText.length === 0) selectRange(from, to)
    Keys.onEscapePressed: event => {
        event.accepted = selected
        selectionEnded()
    }
    Keys.onPressed: event => {
        // The toolkit's own copy lacks the hint by which clipboard histories leave it out.
        event.accepted = event.matches(StandardKey.Copy)
        if (event.accepted && selectedText.length > 0) {
            Pasteboard.setString(selectedText)
        }
    }

    MouseArea {
        anchors.fill: parent
        cursorShape: Qt.IBeamCursor
        onPressAndHold: mouse => {
            root.selectAll()
            root.menuRequested(mouse.x)
        }
        onDoubleClicked: root.selectAll()
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.RightButton // the text would accept it
        onClicked: mouse => root.menuRequested(mouse.x)
    }

    DragHandler {
        function place(position: point): int {
            return Math.max(0, root.positionAt(position.x, position.y) - root.mark.length)
        }

        target: null
        grabPermissions: PointerHandler.CanTakeOverFromAnything // and leaves it to none
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onCentroidChanged: {
            const begin = place(centroid.pressPosition)
            const end = place(centroid.position)
            if (active && begin !== end) {
                root.start(Math.min(begin, end), Math.max(begin, end))
            }
        }
    }
}
