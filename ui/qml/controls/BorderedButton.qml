import QtQuick
import MirrowvaleAuthenticator

/// A titled button on a filled shape. The shape is lower than what reacts to a touch.
PlainButton {
    id: root

    implicitWidth: Math.max(Theme.target, title.implicitWidth + 24)
    implicitHeight: Math.max(Theme.target, title.implicitHeight)
    baselineOffset: title.baselineOffset
    focusRing.anchors.fill: shape

    Rectangle {
        id: shape

        y: (parent.height - height) / 2
        width: parent.width
        height: title.implicitHeight + 12
        radius: 8
        color: root.down ? Theme.fillPressed : Theme.fill
    }

    Text {
        id: title

        anchors.fill: parent
        text: root.text
        font: Theme.subheadline
        color: root.enabled ? Theme.tint : Theme.disabled
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignHCenter
    }
}
