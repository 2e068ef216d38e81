import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Desktop

/// A text that is a row of a form and grows with its lines. Tab leaves it.
T.TextArea {
    id: root

    required property string placeholder

    /// Enter was pressed, which makes no line.
    signal accepted

    function acceptOnce(event: KeyEvent): void {
        if (!event.isAutoRepeat) {
            accepted()
        }
    }

    /// The caret has no place in the empty lines at the end.
    function keepCaretInSight(): void {
        if (selectedText.length === 0) {
            cursorPosition = Math.min(cursorPosition, length - emptyLines)
        }
    }

    /// How many empty lines end the text, as a copied line brings its end along. The field does not grow for them.
    readonly property int emptyLines: text.length - text.replace(/\n+$/, "").length

    implicitHeight: Math.max(Theme.target, contentHeight * (1 - emptyLines / lineCount) + topPadding + bottomPadding)
    clip: emptyLines > 0
    leftPadding: Theme.padding
    rightPadding: Theme.padding
    topPadding: 11
    bottomPadding: 11
    font: Theme.body
    color: Theme.primary
    selectionColor: Theme.selection
    selectedTextColor: Theme.primary
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.WrapAnywhere
    selectByMouse: pointer.hovered
    onCursorPositionChanged: keepCaretInSight()
    onEmptyLinesChanged: keepCaretInSight()
    Accessible.name: placeholder
    KeyNavigation.priority: KeyNavigation.BeforeItem
    Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    Keys.onReturnPressed: event => acceptOnce(event)
    Keys.onEnterPressed: event => acceptOnce(event)

    // The toolkit's own copy lacks the hint by which clipboard histories leave a secret out.
    Keys.onPressed: event => {
        const cuts = event.matches(StandardKey.Cut)
        event.accepted = selectedText.length > 0 && (cuts || event.matches(StandardKey.Copy))
        if (event.accepted) {
            Pasteboard.setString(selectedText)
        }
        if (event.accepted && cuts) {
            remove(selectionStart, selectionEnd)
        }
    }

    FieldParts { field: root }

    // A finger that moves scrolls the form; a pointer selects.
    HoverHandler {
        id: pointer

        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    }
}
