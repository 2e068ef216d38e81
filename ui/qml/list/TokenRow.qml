import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Items

/// One token: whom it is for, its code, and what can be done with it. A swipe from the trailing edge or the
/// Delete key reveals "Delete".
TokenRowItem {
    id: root

    required index
    required issuer
    required account
    required displayCode
    required offersNext
    required countdown
    required longestCountdown
    required current
    required property bool urgent
    required property bool copied

    /// The margin at both sides.
    required property real inset
    /// While a row of the list is open, a tap on any row closes that one and does nothing else.
    required property bool listHasOpenRow

    readonly property alias code: code

    signal swiped
    signal tappedToClose
    signal codeSelected

    function settle(opens: bool): void {
        open = opens
        settling.to = opens ? deleteWidth : 0
        settling.restart()
    }

    /// Opens the row and gives focus to "Delete".
    function reveal(): void {
        swiped()
        settle(true)
        deleteButton?.forceActiveFocus(Qt.TabFocusReason)
    }

    function close(): void {
        settle(false)
        takeKeyboard()
    }

    /// Copies for a key, once however long it is held.
    function copyOnce(event: KeyEvent): void {
        if (!event.isAutoRepeat) {
            copyRequested()
        }
    }

    /// Has the focus, and shows it.
    function takeKeyboard(): void {
        forceActiveFocus(Qt.TabFocusReason)
        visualFocus = true
    }

    /// How far the row stands away from its trailing edge.
    property real revealed: 0
    readonly property DeleteButton deleteButton: deletion.item as DeleteButton
    readonly property real deleteWidth: deleteButton?.implicitWidth ?? 0
    readonly property int openingDirection: Theme.mirrored ? 1 : -1

    onDeleteWidthChanged: if (revealed > 0 && open && !settling.running) revealed = deleteWidth
    implicitHeight: content.height
    activeFocusOnTab: current || activeFocus // an item that has focus stays in the order of Tab
    Accessible.role: Accessible.ListItem
    Keys.onReturnPressed: event => copyOnce(event)
    Keys.onEnterPressed: event => copyOnce(event)
    Keys.onSpacePressed: event => copyOnce(event)
    Keys.onDeletePressed: reveal()
    Keys.onEscapePressed: event => {
        event.accepted = open
        if (open) {
            close()
        }
    }
    Keys.onPressed: event => {
        if (event.matches(StandardKey.Copy)) {
            event.accepted = true
            copyRequested()
        }
    }

    NumberAnimation {
        id: settling

        target: root
        property: "revealed"
        duration: Theme.moderate
        easing.type: Easing.OutCubic
    }

    DragHandler {
        id: swipe

        property real start: 0
        readonly property real flickSpeed: 300

        function follow(): void {
            const distance = start + activeTranslation.x * root.openingDirection
            const beyond = Math.max(0, distance - root.deleteWidth)
            root.revealed = Math.max(0, Math.min(distance, root.deleteWidth)) + beyond / 4
        }

        function opens(): bool {
            const speed = centroid.velocity.x * root.openingDirection
            return speed > flickSpeed || (speed > -flickSpeed && root.revealed > root.deleteWidth / 2)
        }

        target: null
        yAxis.enabled: false
        onActiveChanged: {
            if (active) {
                settling.stop()
                start = root.revealed
                root.swiped()
            } else {
                root.settle(opens())
            }
        }
        onActiveTranslationChanged: if (active) follow()
    }

    RowLoader {
        id: deletion

        row: root
        x: Theme.mirrored ? root.revealed - width : parent.width - root.revealed
        width: Math.max(root.deleteWidth, root.revealed)
        height: parent.height
        // Few rows are ever opened.
        active: swipe.active || visible
        visible: root.open || root.revealed > 0

        sourceComponent: DeleteButton {
            readonly property TokenRowItem row: (parent as RowLoader)?.row ?? null

            activeFocusOnTab: (row?.open ?? false) || activeFocus
            onClicked: row.deleteRequested()
        }
    }

    Rectangle {
        id: content

        x: root.revealed * root.openingDirection
        width: parent.width
        height: header.height + Theme.spacing + codeLine.height + 2 * Theme.rowPadding
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

            Text {
                id: issuer

                anchors { left: parent.left; right: trailing.left; rightMargin: Theme.spacing }
                text: root.issuer
                textFormat: Text.PlainText
                font: Theme.headline
                color: Theme.primary
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
            }

            Text {
                id: account

                anchors { top: issuer.bottom; topMargin: 2; left: issuer.left; right: issuer.right }
                text: root.account
                textFormat: Text.PlainText
                font: Theme.subheadline
                color: Theme.secondary
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
            }

            Item {
                id: trailing

                anchors { right: parent.right; baseline: issuer.baseline }
                // A countdown keeps the width of its longest: no tick lays the names out anew.
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

        Item {
            id: codeLine

            anchors { top: header.bottom; topMargin: Theme.spacing; left: header.left; right: header.right }
            height: code.height

            SelectableCode {
                id: code

                anchors.left: parent.left
                code: root.displayCode
                room: codeLine.width - copy.symbolSize - Theme.spacing
                onSelectionStarted: root.codeSelected()
                onSelectionEnded: root.forceActiveFocus(Qt.OtherFocusReason)
            }

            SymbolButton {
                id: copy

                anchors {
                    right: parent.right
                    rightMargin: -(width - symbolSize) / 2
                    verticalCenter: parent.verticalCenter
                }
                text: root.copied ? qsTr("Copied") : qsTr("Copy code")
                symbol: root.copied ? "checkmark.circle.fill" : "doc.on.doc"
                activeFocusOnTab: root.current || activeFocus
                onClicked: root.copyRequested()
            }
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
