import QtQuick
import MirrowvaleAuthenticator

/// What an open row shows.
TextButton {
    id: root

    text: qsTr("Delete")
    implicitWidth: Math.max(84, title.implicitWidth + 2 * margin)
    title.topPadding: Theme.symbolSize * Theme.textScale + 4
    title.font: Theme.subheadline
    title.color: Theme.destructiveLabel
    title.opacity: 1
    focusRing.anchors.margins: 4
    focusRing.border.color: Theme.destructiveLabel

    Rectangle {
        z: -1
        anchors.fill: parent
        color: Theme.destructive
        opacity: root.down ? 0.8 : 1

        Symbol {
            anchors.centerIn: parent
            anchors.verticalCenterOffset: -(root.title.implicitHeight - size) / 2
            name: "trash"
            color: Theme.destructiveLabel
        }
    }
}
