import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Items
import MirrowvaleAuthenticator.Screens

/// Where the focus is in a list of tokens: how keys move it, how the list scrolls with it, and where it goes when a row
/// is deleted.
Item {
    id: root

    required property ListView list
    required property ContentView contentView

    /// What gets focus when the last token is deleted.
    required property Item focusWhenEmpty

    readonly property TokenRow current: list.currentItem as TokenRow

    /// Whether the focus is where it was not seen; a key then shows it, and does no more.
    readonly property bool hidden: current !== null && current.activeFocus && !current.visualFocus

    function ringShowsAt(item: Item): bool {
        return (item as KeyboardFocusItem)?.visualFocus ?? false
    }

    /// The row around an item of the window, if any.
    function rowAround(item: Item): TokenRow {
        return item === null || item instanceof TokenRow ? item as TokenRow : rowAround(item.parent)
    }

    /// Whether an item has not been scrolled out of sight.
    function sees(item: Item): bool {
        const middle = item.mapToItem(list, 0, item.height / 2).y
        return middle >= 0 && middle <= list.height
    }

    /// How much of the current row, higher than the view, has yet to be scrolled into it; 0 where another row is next.
    function unseen(direction: int): real {
        if (!current || current.height <= list.height) {
            return 0
        }
        const end = current.y + current.height
        const rest = direction > 0 ? end - list.contentY - list.height : list.contentY - current.y
        return rest >= 1 && rest < current.height ? rest : 0
    }

    function give(item: Item, shows: bool): void {
        item.forceActiveFocus(shows ? Qt.TabFocusReason : Qt.OtherFocusReason)
    }

    /// Gives focus to the current row, and shows it.
    function show(): void {
        scrollToRow(list.currentIndex)
        if (current) {
            give(current, true)
            current.visualFocus = true // also where it had focus
        }
    }

    function scrollToRow(row: int): void {
        if (row === 0) {
            list.positionViewAtBeginning()
        } else {
            list.positionViewAtIndex(row, ListView.Contain)
        }
    }

    /// Scrolls on where a part of a row would be out of sight.
    function scrollToPart(part: Item): void {
        const top = part.mapToItem(list.contentItem, 0, 0).y
        list.contentY = Math.min(top, Math.max(list.contentY, top + part.height - list.height))
    }

    /// Scrolls by so many views; the row at the edge stays in sight, if only in part.
    function scrollBy(views: int): void {
        const edge = list.itemAt(list.width / 2, views > 0 ? list.contentY + list.height - 1 : list.contentY)
        const kept = Math.min(edge?.height ?? 0, list.height / 2)
        const end = list.originY + Math.max(0, list.contentHeight - list.height)
        list.contentY = Math.max(list.originY, Math.min(end, list.contentY + views * (list.height - kept)))
    }

    /// On the way up, the lower end of a row that is higher than the view comes first.
    function goTo(row: int, direction: int): void {
        const before = list.currentIndex
        list.currentIndex = Math.max(0, Math.min(list.count - 1, row))
        show()
        if (direction < 0 && list.currentIndex !== before && current.height > list.height) {
            list.positionViewAtIndex(list.currentIndex, ListView.End)
        }
    }

    /// Moves the focus to a row.
    function moveTo(row: int): void {
        if (hidden) {
            show()
        } else {
            goTo(row, 1)
        }
    }

    /// Moves the focus to the next row, or the one before; by as many rows as the view holds where it turns a page.
    function move(direction: int, turnsPage: bool): void {
        const rest = unseen(direction)
        if (hidden) {
            show()
        } else if (rest > 0) {
            list.contentY += direction * Math.min(rest, list.height / 2)
        } else if (turnsPage) {
            list.positionViewAtIndex(list.currentIndex, direction > 0 ? ListView.Beginning : ListView.End)
            goTo(lastInSight(direction), direction)
        } else {
            goTo(list.currentIndex + direction, direction)
        }
    }

    /// The last row in a direction that is in sight as a whole, or at least the one next to the current one.
    function lastInSight(direction: int): int {
        const bottom = list.contentY + list.height
        const edge = list.itemAt(list.width / 2, direction > 0 ? bottom - 1 : list.contentY) as TokenRow
        if (!edge) {
            return direction > 0 ? list.count - 1 : 0
        }
        const whole = direction > 0 ? edge.y + edge.height <= bottom + 1 : edge.y >= list.contentY - 1
        const reached = whole ? edge.index : edge.index - direction
        const next = list.currentIndex + direction
        return direction > 0 ? Math.max(next, reached) : Math.min(next, reached)
    }

    /// Deletes a row's token. Focus that showed in the row shows in the next one; any that is elsewhere stays there.
    function deleteRow(row: TokenRow): void {
        const item = Window.activeFocusItem
        const shows = ringShowsAt(item)
        const around = rowAround(item)
        const passesOn = shows && around === row
        if (passesOn) {
            list.currentIndex = row.index
        }
        contentView.deleteToken(row.index)
        list.forceLayout() // only then is the next row the current one
        if (list.count === 0) {
            give(focusWhenEmpty, passesOn)
        } else if (passesOn) {
            show()
        } else if (around !== null && around !== row) {
            give(item as SelectableCode ? around : item, shows) // a code has focus with a selection alone
        }
    }

    /// The row in which something has got focus is the current one, and in sight where the focus shows.
    function follow(item: Item): void {
        const row = rowAround(item)
        const shows = ringShowsAt(item)
        if (!row) {
            return
        }
        if (list.currentIndex !== row.index) {
            list.currentIndex = row.index // which gives the row focus
            give(item, shows)
        }
        if (shows) {
            scrollToRow(row.index)
            if (item !== row) {
                scrollToPart(item)
            }
        }
    }

    Window.onActiveFocusItemChanged: follow(Window.activeFocusItem)
    Keys.onUpPressed: move(-1, false)
    Keys.onDownPressed: move(1, false)
    Keys.onPressed: event => {
        event.accepted = true
        switch (event.key) {
        case Qt.Key_Home:
            moveTo(0)
            break
        case Qt.Key_End:
            moveTo(list.count - 1)
            break
        case Qt.Key_PageUp:
            move(-1, true)
            break
        case Qt.Key_PageDown:
            move(1, true)
            break
        default:
            event.accepted = false
        }
    }
}
