import QtQuick
import MirrowvaleAuthenticator

/// What an open row shows.
PlainButton {
    id: root

    text: qsTr("Delete")
    implicitWidth: Math.max(84, title.implicitWidth + 2 * Theme.padding)
    focusRing.anchors.margins: 4
    focusRing.border.color: Theme.destructiveLabel

    Rectangle {
        anchors.fill: parent
        color: Theme.destructive
        opacity: root.down ? 0.8 : 1

        Symbol {
            anchors.centerIn: parent
            anchors.verticalCenterOffset: -(title.implicitHeight - size) / 2
            name: "trash"
            color: Theme.destructiveLabel
        }
    }

    Text {
        id: title

        anchors { fill: parent; leftMargin: Theme.padding; rightMargin: Theme.padding }
        topPadding: Theme.symbolSize * Theme.textScale + 4
        text: root.text
        font: Theme.subheadline
        color: Theme.destructiveLabel
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
