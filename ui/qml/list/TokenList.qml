import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Items
import MirrowvaleAuthenticator.Screens

/// The tokens, one row each, under the large title.
ListView {
    id: root

    required property ContentView contentView
    required property string title

    property TokenRow openRow: null
    property SelectableCode selectedCode: null

    /// The last token has been deleted.
    /// @param showsFocus  whether the focus ring was shown
    signal emptied(bool showsFocus)

    /// 0 while the large title is in sight, 1 when it has gone under the bar.
    readonly property real titleScrolledAway: Math.max(0, Math.min(1, (contentY - originY - 28) / 16))

    /// Gives focus to a row or to something in it.
    function giveFocus(item: Item, shows: bool): void {
        item.forceActiveFocus(shows ? Qt.TabFocusReason : Qt.OtherFocusReason)
    }

    function closeOpenRow(): void {
        if (openRow?.deleteButton?.activeFocus) {
            giveFocus(openRow, openRow.deleteButton.visualFocus)
        }
        openRow?.settle(false)
        openRow = null
    }

    /// Closes another one that is open: there is one at most.
    function noteOpened(row: TokenRow): void {
        if (openRow !== row) {
            closeOpenRow()
            openRow = row
        }
    }

    function noteClosed(row: TokenRow): void {
        if (openRow === row) {
            openRow = null
        }
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

    /// Whether the focus has been where it was not seen; it is shown now, and a key does no more.
    function revealFocus(): bool {
        const row = currentItem as TokenRow
        const hidden = row !== null && row.activeFocus && !row.visualFocus
        if (hidden) {
            showFocus()
        }
        return hidden
    }

    /// Whether the current row is higher than the view and has more to show; that comes into sight now.
    function scrollToRest(direction: int): bool {
        const row = currentItem as TokenRow
        if (!row || row.height <= height) {
            return false
        }
        const rest = direction > 0 ? row.y + row.height - contentY - height : contentY - row.y
        const partly = rest >= 1 && rest < row.height
        if (partly) {
            contentY += direction * Math.min(rest, height / 2)
        }
        return partly
    }

    /// Moves the focus to a row.
    function moveTo(row: int): void {
        if (!revealFocus()) {
            goTo(row)
        }
    }

    /// Moves the focus to the next row, or the one before.
    function step(direction: int): void {
        if (!revealFocus() && !scrollToRest(direction)) {
            goOn(currentIndex + direction, direction)
        }
    }

    /// Moves the focus by as many rows as the view holds.
    function turnPage(direction: int): void {
        if (!revealFocus() && !scrollToRest(direction)) {
            goOn(rowAPageFrom(currentIndex, direction), direction)
        }
    }

    function goTo(row: int): void {
        currentIndex = Math.max(0, Math.min(count - 1, row))
        showFocus()
    }

    /// On the way up, the lower end of a row that is higher than the view comes first.
    function goOn(row: int, direction: int): void {
        const before = currentIndex
        goTo(row)
        if (direction < 0 && currentIndex !== before && currentItem.height > height) {
            positionViewAtIndex(currentIndex, ListView.End)
        }
    }

    /// Scrolls until a row stands at one edge of the view.
    ///
    /// @returns  the last row that is then in sight as a whole, or at least the next one
    function rowAPageFrom(row: int, direction: int): int {
        positionViewAtIndex(row, direction > 0 ? ListView.Beginning : ListView.End)
        const edge = itemAt(width / 2, direction > 0 ? contentY + height - 1 : contentY) as TokenRow
        if (!edge) {
            return direction > 0 ? count - 1 : 0
        }
        const whole = direction > 0 ? edge.y + edge.height <= contentY + height + 1 : edge.y >= contentY - 1
        const reached = whole ? edge.index : edge.index - direction
        return direction > 0 ? Math.max(row + 1, reached) : Math.min(row - 1, reached)
    }

    /// Whether an item has not been scrolled out of sight.
    function shows(item: Item): bool {
        const middle = item.mapToItem(root, 0, item.height / 2).y
        return middle >= 0 && middle <= height
    }

    /// Gives focus to the current row, and shows it.
    function showFocus(): void {
        const row = currentItem as TokenRow
        scrollIntoView(currentIndex)
        row?.takeFocus()
    }

    function scrollIntoView(row: int): void {
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

    /// Scrolls on where a part of a row that has the focus would be out of sight.
    function reveal(part: Item): void {
        const top = part.mapToItem(contentItem, 0, 0).y
        contentY = Math.min(top, Math.max(contentY, top + part.height - height))
    }

    /// Scrolls by so many views; the row at the edge stays in sight, if only in part.
    function scroll(views: int): void {
        const edge = itemAt(width / 2, views > 0 ? contentY + height - 1 : contentY)
        const kept = Math.min(edge?.height ?? 0, height / 2)
        const end = originY + Math.max(0, contentHeight - height)
        contentY = Math.max(originY, Math.min(end, contentY + views * (height - kept)))
    }

    model: contentView.rows
    keyNavigationEnabled: false
    boundsBehavior: Flickable.DragAndOvershootBounds
    // A tick works out every row that exists, so none exists that is not in sight, but for a few that wait for another
    // token: to make a row takes longer than a frame of a fling may.
    cacheBuffer: 0
    reuseItems: true
    Accessible.role: Accessible.List
    Accessible.name: title
    onMovementStarted: closeOpenRow()
    Window.onActiveFocusItemChanged: {
        const item = Window.activeFocusItem
        const row = rowAround(item)
        if (!row) {
            return
        }
        const shows = (item as KeyboardFocusItem)?.visualFocus ?? false
        if (currentIndex !== row.index) {
            currentIndex = row.index // which gives the row focus
            giveFocus(item, shows)
        }
        if (shows) {
            scrollIntoView(row.index)
            if (item !== row) {
                reveal(item)
            }
        }
    }
    Keys.onUpPressed: step(-1)
    Keys.onDownPressed: step(1)
    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Home:
            moveTo(0)
            break
        case Qt.Key_End:
            moveTo(count - 1)
            break
        case Qt.Key_PageUp:
            turnPage(-1)
            break
        case Qt.Key_PageDown:
            turnPage(1)
            break
        default:
            return
        }
        event.accepted = true
    }

    // The parts below take their list without a cast: compiled by Qt 6.8, a cast to the type that its own file defines
    // finds nothing.
    header: LargeTitle {
        readonly property TokenList list: ListView.view // qmllint disable

        width: list.width
        text: list.title
        inset: Theme.inset(width)
    }

    delegate: TokenRow {
        id: row

        readonly property TokenList list: ListView.view // qmllint disable

        width: list.width
        inset: Theme.inset(width)
        listHasOpenRow: list.openRow !== null
        current: ListView.isCurrentItem
        ListView.onPooled: {
            visible = false // the view only moves it out of sight
            if (list.selectedCode === code) {
                list.selectedCode = null
            }
            forget()
        }
        ListView.onReused: {
            opacity = 1 // it may be of a row that was deleted
            visible = true
            Accessible.ignored = false // Qt 6.8 keeps what waits from screen readers, and what serves again as well
            stackInOrder()
        }
        onOpenChanged: open ? list.noteOpened(row) : list.noteClosed(row)
        onTappedToClose: list.closeOpenRow()
        onCodeSelected: {
            if (list.selectedCode !== code) {
                list.clearSelection()
            }
            list.selectedCode = code
        }
        onCopyRequested: list.contentView.copyCode(index)
        onCopyPressed: {
            if (list.shows(code)) {
                copyRequested()
            } else {
                list.showFocus()
                list.reveal(code) // a row may be higher than the view, or stand below the title
            }
        }
        onNextRequested: list.contentView.advanceCounter(index)
        onDeleteRequested: {
            const view = list
            const focused = Window.activeFocusItem
            const showsFocus = visualFocus || (deleteButton?.visualFocus ?? false)
            const isElsewhere = view.rowAround(focused) !== null && view.rowAround(focused) !== row
            const showed = (focused as KeyboardFocusItem)?.visualFocus ?? false
            view.noteClosed(row)
            if (showsFocus) {
                view.currentIndex = index
            }
            view.contentView.deleteToken(index)
            view.forceLayout() // only then is the next row the current one
            if (view.count === 0) {
                view.emptied(showsFocus)
            } else if (showsFocus) {
                view.showFocus()
            } else if (isElsewhere) {
                view.giveFocus(focused, showed)
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
