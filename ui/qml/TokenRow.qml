import QtQuick
import MirrowvaleAuthenticator

/// One token: whom it is for, its code, and what can be done with it. A swipe from the trailing edge reveals
/// "Delete".
Item {
    id: root

    required property int index
    required property string issuer
    required property string account
    required property string displayCode
    required property bool offersNext
    required property string countdown
    required property bool urgent
    required property bool copied

    /// The margin at both sides.
    required property real inset
    /// While a row of the list is open, a tap on any row closes that one and does nothing else.
    required property bool listHasOpenRow

    property bool open: false
    readonly property alias code: code

    signal swiped
    signal tappedToClose
    signal codeSelected
    signal copyRequested
    signal nextRequested
    signal deleteRequested

    function settle(opens: bool): void {
        open = opens
        settling.to = opens ? deleteWidth : 0
        settling.restart()
    }

    /// How far the row stands away from its trailing edge.
    property real revealed: 0
    readonly property real deleteWidth: deleteButton.implicitWidth
    readonly property int openingDirection: Theme.mirrored ? 1 : -1

    implicitHeight: content.height
    Accessible.role: Accessible.ListItem
    Accessible.name: root.issuer + ", " + root.account

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

    DeleteButton {
        id: deleteButton

        x: Theme.mirrored ? root.revealed - width : parent.width - root.revealed
        width: Math.max(implicitWidth, root.revealed)
        height: parent.height
        visible: root.revealed > 0
        onClicked: root.deleteRequested()
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

            Label {
                id: issuer

                anchors { left: parent.left; right: trailing.left; rightMargin: Theme.spacing }
                text: root.issuer
                textFormat: Text.PlainText
                font: Theme.headline
                color: Theme.primary
                elide: Text.ElideRight
                maximumLineCount: 1
                horizontalAlignment: Text.AlignLeft
            }

            Label {
                id: account

                anchors { top: issuer.bottom; topMargin: 2; left: issuer.left; right: issuer.right }
                text: root.account
                textFormat: Text.PlainText
                font: Theme.subheadline
                color: Theme.secondary
                elide: Text.ElideRight
                maximumLineCount: 1
                horizontalAlignment: Text.AlignLeft
            }

            Item {
                id: trailing

                anchors { right: parent.right; baseline: issuer.baseline }
                width: root.offersNext ? next.width : countdown.implicitWidth
                baselineOffset: root.offersNext ? next.baselineOffset : countdown.baselineOffset

                Label {
                    id: countdown

                    visible: !root.offersNext
                    text: root.countdown
                    textFormat: Text.PlainText
                    font: Theme.caption
                    color: root.urgent ? Theme.red : Theme.secondary
                }

                BorderedButton {
                    id: next

                    visible: root.offersNext
                    text: qsTr("Next")
                    onClicked: root.nextRequested()
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
                text: root.displayCode
                onSelectionStarted: root.codeSelected()
            }

            SymbolButton {
                anchors {
                    right: parent.right
                    rightMargin: -(width - symbolSize) / 2
                    verticalCenter: parent.verticalCenter
                }
                text: root.copied ? qsTr("Copied") : qsTr("Copy code")
                symbol: root.copied ? "checkmark.circle.fill" : "doc.on.doc"
                onClicked: root.copyRequested()
            }
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
