import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Items
import MirrowvaleAuthenticator.Screens

/// The tokens, one row each, under the large title.
ListView {
    id: root

    required property ContentView contentView
    required property string title

    /// What gets focus when the last token is deleted.
    required property Item focusWhenEmpty

    property TokenRow openRow: null
    /// The code that is selected: the one that has focus, which comes with a selection alone.
    readonly property SelectableCode selectedCode: Window.activeFocusItem as SelectableCode

    readonly property alias rowFocus: focusInRows
    // Its type is not named: to know it, each start would load the toolkit's popups, an eighth of its instructions.
    readonly property var rowMenu: menu.item
    readonly property TokenRow rowWithMenu: rowMenu?.visible ? rowMenu.row : null

    /// 0 while the large title is in sight, 1 when it has gone under the bar.
    readonly property real titleScrolledAway: Math.max(0, Math.min(1, (contentY - originY - 28) / 16))

    function closeOpenRow(): void {
        if (openRow?.deleteButton?.activeFocus) {
            rowFocus.give(openRow, openRow.deleteButton.visualFocus)
        }
        const row = openRow
        openRow = null
        row?.swipe.settle(false)
    }

    /// Notes that a row was opened, which closes another one, or closed: one at most is open.
    function noteMoved(row: TokenRow, opens: bool): void {
        if (opens !== (openRow === row)) {
            closeOpenRow()
            openRow = opens ? row : null
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

    /// Opens the menu of a row that is clicked or held, unless a part of it has a use for the press.
    ///
    /// @param position  in the scene
    function openMenuAt(position: point): void {
        const place = contentItem.mapFromItem(null, position)
        const row = itemAt(place.x, place.y) as TokenRow
        if (row && !row.presses && !row.code.contains(row.code.mapFromItem(null, position))) {
            openMenu(row, row.mapFromItem(null, position).x)
        }
    }

    /// @param position  where something was pressed, in the scene
    function clearSelectionElsewhere(position: point): void {
        if (selectedCode && !selectedCode.contains(selectedCode.mapFromItem(null, position))) {
            selectedCode.selectionEnded()
        }
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
    AccessibleList.onScrollRequested: views => rowFocus.scrollBy(views)
    Keys.forwardTo: [focusInRows]
    onMovementStarted: closeOpenRow()

    RowFocus {
        id: focusInRows

        list: root
        contentView: root.contentView
        focusWhenEmpty: root.focusWhenEmpty
    }

    // The parts below get their list without a cast: a cast to the type that its own file defines gives null, as
    // compiled by Qt 6.8.2.
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
        open: list.openRow === row
        listHasOpenRow: list.openRow !== null
        hasMenu: list.rowWithMenu === row
        current: ListView.isCurrentItem
        ListView.onPooled: {
            visible = false // the view only moves it out of sight
            if (hasMenu) {
                list.rowMenu.close()
            }
            if (open) {
                list.openRow = null
            }
            forget()
        }
        ListView.onReused: {
            opacity = 1 // it may be of a row that was deleted
            visible = true
            // Qt 6.8.2 hides a pooled row from screen readers, and does not show a reused one to them again.
            Accessible.ignored = false
        }
        onMoved: opens => list.noteMoved(row, opens)
        onTappedToClose: list.closeOpenRow()
        onCopyRequested: list.contentView.copyCode(index)
        onCopyPressed: {
            if (list.rowFocus.sees(code)) {
                copyRequested()
            } else {
                list.rowFocus.show()
                list.rowFocus.scrollToPart(code) // a row may be higher than the view, or below the title
            }
        }
        onMenuRequested: place => list.openMenu(row, place)
        onNextRequested: list.contentView.advanceCounter(index)
        onDeleteRequested: {
            list.rowFocus.deleteRow(row)
            if (open) {
                list.openRow = null // a press elsewhere counts while the row fades
            }
        }
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

    Shortcut {
        sequences: ["Menu", "Shift+F10"]
        enabled: root.activeFocus && root.rowFocus.current !== null
        onActivated: {
            const row = root.rowFocus.current
            root.openMenu(row, Theme.mirrored ? row.width - row.inset : row.inset)
        }
    }

    TapHandler {
        parent: root // not the content, which ends with the last row
        onTapped: root.closeOpenRow()
        onLongPressed: {
            if (!root.openRow) {
                root.openMenuAt(point.scenePosition)
            }
        }
    }

    // Not a second handler: beside the first, some of a finger's quick taps were lost (seen in Qt 6.4.2).
    MouseArea {
        parent: root
        anchors.fill: parent
        z: -1
        acceptedButtons: Qt.RightButton
        onClicked: mouse => root.openMenuAt(mapToItem(null, mouse.x, mouse.y))
    }

    // Made when it is first asked for, which most never do.
    Loader {
        id: menu
    }
}
