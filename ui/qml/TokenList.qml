import QtQuick
import MirrowvaleAuthenticator

/// The tokens, one row each, under the large title.
ListView {
    id: root

    required property ContentView contentView
    required property string title

    property TokenRow openRow: null
    property SelectableCode selectedCode: null

    /// The last token has been deleted.
    /// @param byKeyboard  whether the keyboard showed where it was
    signal emptied(bool byKeyboard)

    /// 0 while the large title is in sight, 1 when it has gone under the bar.
    readonly property real titleScrolledAway: Math.max(0, Math.min(1, (contentY - originY - 28) / 16))

    /// Gives the keyboard to a row or to something in it.
    function giveKeyboard(item: Item, shows: bool): void {
        item.forceActiveFocus(shows ? Qt.TabFocusReason : Qt.OtherFocusReason)
    }

    function closeOpenRow(): void {
        if (openRow?.deleteButton?.activeFocus) {
            giveKeyboard(openRow, openRow.deleteButton.visualFocus)
        }
        openRow?.settle(false)
        openRow = null
    }

    /// @param position  where something was pressed, in the scene
    function clearSelectionElsewhere(position: point): void {
        if (selectedCode && !selectedCode.contains(selectedCode.mapFromItem(null, position))) {
            clearSelection()
        }
    }

    function clearSelection(): void {
        selectedCode?.clearSelection()
        selectedCode = null
    }

    /// Moves the keyboard to a row. The first press shows where the keyboard is.
    function moveTo(row: int): void {
        const here = currentItem as TokenRow
        if (here?.activeFocus && !here.visualFocus) {
            showFocus()
            return
        }
        currentIndex = Math.max(0, Math.min(count - 1, row))
        showFocus()
    }

    /// Puts the keyboard on the current row, for the eye as well.
    function showFocus(): void {
        const row = currentItem as TokenRow
        bringIntoSight(currentIndex)
        row?.takeKeyboard()
    }

    function bringIntoSight(row: int): void {
        if (row === 0) {
            positionViewAtBeginning()
        } else {
            positionViewAtIndex(row, ListView.Contain)
        }
    }

    /// The row that an item of the window stands in, if any.
    function rowAround(item: Item): TokenRow {
        return item === null || item instanceof TokenRow ? item as TokenRow : rowAround(item.parent)
    }

    /// Scrolls by so many views; a row of the last one stays in sight.
    function scroll(views: int): void {
        const rowHeight = currentItem?.height ?? 0
        const end = originY + Math.max(0, contentHeight - height)
        contentY = Math.max(originY, Math.min(end, contentY + views * Math.max(rowHeight, height - rowHeight)))
    }

    /// How many rows fit into the view.
    function page(): int {
        return Math.max(1, Math.floor(height / Math.max(1, currentItem?.height ?? 1)) - 1)
    }

    model: contentView.rows
    keyNavigationEnabled: false
    boundsBehavior: Flickable.DragAndOvershootBounds
    // A tick works out every row that exists, so none exists that is not in sight.
    cacheBuffer: 0
    reuseItems: false
    Accessible.role: Accessible.List
    Accessible.name: title
    Accessible.onScrollDownAction: scroll(1)
    Accessible.onScrollUpAction: scroll(-1)
    onMovementStarted: closeOpenRow()
    Window.onActiveFocusItemChanged: {
        const item = Window.activeFocusItem
        const row = rowAround(item)
        if (!row) {
            return
        }
        const shows = (item as KeyboardFocusItem)?.visualFocus ?? false
        if (currentIndex !== row.index) {
            currentIndex = row.index // which gives the row the keyboard
            giveKeyboard(item, shows)
        }
        if (shows) {
            bringIntoSight(row.index)
        }
    }
    Keys.onUpPressed: moveTo(currentIndex - 1)
    Keys.onDownPressed: moveTo(currentIndex + 1)
    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Home:
            moveTo(0)
            break
        case Qt.Key_End:
            moveTo(count - 1)
            break
        case Qt.Key_PageUp:
            moveTo(currentIndex - page())
            break
        case Qt.Key_PageDown:
            moveTo(currentIndex + page())
            break
        default:
            return
        }
        event.accepted = true
    }

    header: LargeTitle {
        readonly property TokenList list: ListView.view as TokenList

        width: list.width
        text: list.title
        inset: Theme.inset(width)
    }

    delegate: TokenRow {
        id: row

        readonly property TokenList list: ListView.view as TokenList

        width: list.width
        inset: Theme.inset(width)
        listHasOpenRow: list.openRow !== null
        current: ListView.isCurrentItem
        onSwiped: {
            if (list.openRow !== row) {
                list.closeOpenRow()
            }
            list.openRow = row
        }
        onOpenChanged: {
            if (!open && list.openRow === row) {
                list.openRow = null
            }
        }
        onTappedToClose: list.closeOpenRow()
        onCodeSelected: {
            if (list.selectedCode !== code) {
                list.clearSelection()
            }
            list.selectedCode = code
        }
        onCopyRequested: list.contentView.copyCode(index)
        onNextRequested: list.contentView.advanceCounter(index)
        onDeleteRequested: {
            const view = list
            const keyboard = Window.activeFocusItem
            const byKeyboard = visualFocus || (deleteButton?.visualFocus ?? false)
            const isElsewhere = view.rowAround(keyboard) !== null && view.rowAround(keyboard) !== row
            const showed = (keyboard as KeyboardFocusItem)?.visualFocus ?? false
            view.openRow = null
            if (byKeyboard) {
                view.currentIndex = index
            }
            view.contentView.deleteToken(index)
            view.forceLayout() // only then is the next row the current one
            if (view.count === 0) {
                view.emptied(byKeyboard)
            } else if (byKeyboard) {
                view.showFocus()
            } else if (isElsewhere) {
                view.giveKeyboard(keyboard, showed)
            }
        }
    }

    // What is below the last row.
    MouseArea {
        y: root.originY + root.contentHeight
        width: root.width
        height: Math.max(0, root.height - root.contentHeight)
        enabled: root.openRow !== null
        onClicked: root.closeOpenRow()
    }

    remove: Transition {
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: Theme.quick
        }
    }
    removeDisplaced: Transition {
        NumberAnimation {
            property: "y"
            duration: Theme.moderate
            easing.type: Easing.OutCubic
        }
    }

    Connections {
        target: Theme

        function onTextScaleChanged(): void {
            if (root.titleScrolledAway === 0) {
                root.forceLayout() // the title grows upwards
                root.positionViewAtBeginning()
            }
        }
    }

    TapHandler {
        parent: root // not the content, which ends with the last row
        onTapped: root.closeOpenRow()
    }
}
