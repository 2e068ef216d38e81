import QtQuick
import MirrowvaleAuthenticator

/// A titled button on a filled shape. The shape is lower than what reacts to a touch.
PlainButton {
    id: root

    readonly property real shapeHeight: implicitContentHeight + 12

    font: Theme.subheadline
    leftPadding: 12
    rightPadding: 12
    focusRing.anchors.fill: background

    contentItem: Text {
        text: root.text
        font: root.font
        color: root.enabled ? Theme.tint : Theme.disabled
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignHCenter
    }
    topInset: (height - shapeHeight) / 2
    bottomInset: topInset
    background: Rectangle {
        radius: 8
        color: root.down ? Theme.fillPressed : Theme.fill
    }
}
