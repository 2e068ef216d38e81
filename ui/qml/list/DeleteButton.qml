import QtQuick
import MirrowvaleAuthenticator

/// What an open row shows.
PlainButton {
    id: root

    readonly property real gap: 4

    text: qsTr("Delete")
    font: Theme.subheadline
    leftPadding: Theme.padding
    rightPadding: Theme.padding
    implicitWidth: Math.max(84, implicitContentWidth + leftPadding + rightPadding)
    focusRing.anchors.margins: 4
    focusRing.border.color: Theme.destructiveLabel

    contentItem: Text {
        topPadding: Theme.symbolSize * Theme.textScale + root.gap
        text: root.text
        font: root.font
        color: Theme.destructiveLabel
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        color: Theme.destructive
        opacity: root.down ? 0.8 : 1

        Symbol {
            anchors.centerIn: parent
            anchors.verticalCenterOffset: -(root.implicitContentHeight - size) / 2
            name: "trash"
            color: Theme.destructiveLabel
        }
    }
}
