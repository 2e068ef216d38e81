import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Items

/// One token: whom it is for, its code, and what can be done with it. A swipe from the trailing edge or the
/// Delete key opens it, which shows "Delete".
TokenRowItem {
    id: root

    required issuer
    required account
    required displayCode
    required offersNext
    required countdown
    required current
    required open
    required property int index
    required property string longestCountdown
    required property bool urgent
    required property bool copied

    /// The margin at both sides.
    required property real inset
    /// While a row of the list is open, a tap on any row closes that one and does nothing else.
    required property bool listHasOpenRow

    /// While its menu is up, no press that began before it swipes the row.
    required property bool hasMenu

    readonly property alias code: code
    readonly property alias swipe: swipe

    /// Whether one of its buttons is being pressed.
    readonly property bool presses: copy.down || ((next.item as BorderedButton)?.down ?? false)

    /// It begins to open or to close.
    signal moved(bool opens)

    signal copyPressed
    signal tappedToClose

    /// @param place  where the menu is asked for, from the row's left edge
    signal menuRequested(real place)

    /// Opens the row and gives focus to "Delete".
    function openByKey(): void {
        swipe.settle(true)
        deleteButton?.forceActiveFocus(Qt.TabFocusReason)
    }

    /// Once for a key, however long it is held.
    function copyOnce(event: KeyEvent): void {
        if (!event.isAutoRepeat) {
            copyPressed()
        }
    }

    /// Forgets what was done to it as the row of another token.
    function forget(): void {
        swipe.closeAtOnce()
        code.forget()
    }

    /// How far the row is moved away from its trailing edge.
    property alias offset: swipe.offset
    readonly property DeleteButton deleteButton: deletion.item as DeleteButton
    readonly property real deleteWidth: deleteButton?.implicitWidth ?? 0

    implicitHeight: content.height
    activeFocusOnTab: current || activeFocus // an item that has focus stays in the order of Tab
    Accessible.role: Accessible.ListItem
    Keys.onReturnPressed: event => copyOnce(event)
    Keys.onEnterPressed: event => copyOnce(event)
    Keys.onSpacePressed: event => copyOnce(event)
    Keys.onDeletePressed: openByKey()
    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Copy)
        if (event.accepted) {
            copyOnce(event)
        }
    }

    Swipe {
        id: swipe

        enabled: root.visible && !root.hasMenu // a row that waits for another token ends its swipe
        extent: root.deleteWidth
        open: root.open
        onMoved: opens => root.moved(opens)
    }

    RowLoader {
        id: deletion

        row: root
        x: Theme.mirrored ? root.offset - width : parent.width - root.offset
        width: Math.max(root.deleteWidth, root.offset)
        height: parent.height
        // Few rows are ever opened.
        active: swipe.active || visible
        visible: root.open || root.offset > 0

        sourceComponent: DeleteButton {
            readonly property TokenRowItem row: (parent as RowLoader)?.row ?? null

            activeFocusOnTab: (row?.open ?? false) || activeFocus
            onClicked: row.deleteRequested()
        }
    }

    Rectangle {
        id: content

        x: root.offset * swipe.openingDirection
        width: parent.width
        height: header.height + Theme.spacing + code.height + 2 * Theme.rowPadding
        color: Theme.background

        Item {
            id: header

            anchors {
                top: parent.top
                topMargin: Theme.rowPadding
                left: parent.left
                leftMargin: root.inset
                right: parent.right
                rightMargin: root.inset
            }
            height: account.y + account.height

            WholeText {
                id: issuer

                anchors { left: parent.left; right: trailing.left; rightMargin: Theme.spacing }
                text: root.issuer
                font: Theme.headline
            }

            WholeText {
                id: account

                anchors { top: issuer.bottom; topMargin: 2; left: issuer.left; right: issuer.right }
                text: root.account
                font: Theme.subheadline
                color: Theme.secondary
            }

            Item {
                id: trailing

                anchors { right: parent.right; baseline: issuer.baseline }
                // A countdown is as wide as its longest, so that no tick lays the names out anew.
                width: root.offersNext ? next.width : Theme.countdownWidth(root.longestCountdown)
                baselineOffset: next.item ? (next.item as Item).baselineOffset : countdown.baselineOffset

                Text {
                    id: countdown

                    anchors.right: parent.right
                    visible: !root.offersNext
                    text: root.countdown
                    textFormat: Text.PlainText
                    font: Theme.caption
                    color: root.urgent ? Theme.red : Theme.secondary
                }

                RowLoader {
                    id: next

                    row: root
                    active: root.offersNext

                    sourceComponent: BorderedButton {
                        readonly property TokenRowItem row: (parent as RowLoader)?.row ?? null

                        text: qsTr("Next")
                        activeFocusOnTab: (row?.current ?? false) || activeFocus
                        onClicked: row.nextRequested()
                    }
                }
            }
        }

        SelectableCode {
            id: code

            anchors { top: header.bottom; topMargin: Theme.spacing; left: header.left }
            code: root.displayCode
            room: header.width - copy.symbolSize - Theme.spacing
            onMenuRequested: place => root.menuRequested(mapToItem(root, place, 0).x)
            onSelectionEnded: root.forceActiveFocus(Qt.OtherFocusReason)
        }

        SymbolButton {
            id: copy

            anchors {
                right: header.right
                rightMargin: -(width - symbolSize) / 2
                verticalCenter: code.verticalCenter
            }
            text: root.copied ? qsTr("Copied") : qsTr("Copy code")
            symbol: root.copied ? "checkmark.circle.fill" : "doc.on.doc"
            activeFocusOnTab: root.current || activeFocus
            onClicked: root.copyRequested()
        }

        Announcement {
            text: qsTr("Copied")
            visible: root.copied
        }

        FocusRing {
            visible: root.visualFocus
            anchors.margins: 2
        }

        Hairline {
            anchors {
                left: parent.left
                leftMargin: root.inset
                right: parent.right
                rightMargin: root.inset > Theme.padding ? root.inset : 0
                bottom: parent.bottom
            }
        }

        MouseArea {
            anchors.fill: parent
            enabled: root.listHasOpenRow
            onClicked: root.tappedToClose()
        }
    }
}
