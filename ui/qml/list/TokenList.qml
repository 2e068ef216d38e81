import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Screens

/// The tokens, one row each, under the large title.
ListView {
    id: root

    required property ContentView contentView
    required property string title

    property TokenRow openRow: null
    property SelectableCode selectedCode: null

    readonly property alias rowFocus: focusInRows
    readonly property RowMenu rowMenu: menu.item as RowMenu
    readonly property TokenRow rowWithMenu: rowMenu?.visible ? rowMenu.row : null

    /// The last token has been deleted.
    /// @param showsFocus  whether the focus ring was shown
    signal emptied(bool showsFocus)

    /// 0 while the large title is in sight, 1 when it has gone under the bar.
    readonly property real titleScrolledAway: Math.max(0, Math.min(1, (contentY - originY - 28) / 16))

    function showFocus(): void {
        rowFocus.show()
    }

    /// For a screen reader.
    function scroll(views: int): void {
        rowFocus.scrollBy(views)
    }

    function closeOpenRow(): void {
        if (openRow?.deleteButton?.activeFocus) {
            rowFocus.give(openRow, openRow.deleteButton.visualFocus)
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

    /// Opens a row's menu.
    ///
    /// @param place  where it is asked for, from the row's left edge
    function openMenu(row: TokenRow, place: real): void {
        closeOpenRow()
        rowFocus.scrollToRow(row.index)
        menu.source = "RowMenu.qml"
        rowMenu.openFor(row, place)
    }

    /// The row that is pressed, unless a part of it has a use for the press.
    ///
    /// @param position  in the scene
    function rowPressed(position: point): TokenRow {
        const place = contentItem.mapFromItem(null, position)
        const row = itemAt(place.x, place.y) as TokenRow
        return row && !row.presses && !row.code.contains(row.code.mapFromItem(null, position)) ? row : null
    }

    /// Opens the menu of a row that is clicked or held.
    ///
    /// @param position  in the scene
    function openMenuAt(position: point): void {
        const row = rowPressed(position)
        if (row) {
            openMenu(row, row.mapFromItem(null, position).x)
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

    model: contentView.rows
    interactive: rowWithMenu === null
    keyNavigationEnabled: false
    boundsBehavior: Flickable.DragAndOvershootBounds
    // A tick works out every row that exists, so none exists that is not in sight, but for a few that wait for another
    // token: to make a row takes longer than a frame of a fling may.
    cacheBuffer: 0
    reuseItems: true
    Accessible.role: Accessible.List
    Accessible.name: title
    Keys.forwardTo: [focusInRows]
    onMovementStarted: closeOpenRow()

    RowFocus {
        id: focusInRows

        list: root
        contentView: root.contentView
        onEmptied: showsFocus => root.emptied(showsFocus)
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
        hasMenu: list.rowWithMenu === row
        current: ListView.isCurrentItem
        ListView.onPooled: {
            visible = false // the view only moves it out of sight
            if (hasMenu) {
                list.rowMenu.close()
            }
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
            if (list.rowFocus.sees(code)) {
                copyRequested()
            } else {
                list.rowFocus.show()
                list.rowFocus.scrollToPart(code) // a row may be higher than the view, or stand below the title
            }
        }
        onMenuRequested: place => list.openMenu(row, place)
        onNextRequested: list.contentView.advanceCounter(index)
        onDeleteRequested: {
            list.noteClosed(row)
            list.rowFocus.deleteRow(row)
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
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onTapped: (point, button) => {
            if (button === Qt.RightButton) {
                root.openMenuAt(point.scenePosition)
            } else {
                root.closeOpenRow()
            }
        }
        onLongPressed: {
            if (!root.openRow) {
                root.openMenuAt(point.scenePosition)
            }
        }
    }

    // Few ever need it.
    Loader {
        id: menu
    }
}
