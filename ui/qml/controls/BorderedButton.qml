import QtQuick
import MirrowvaleAuthenticator

/// A titled button on a filled shape. The shape is lower than what reacts to a touch.
TextButton {
    id: root

    margin: 12
    title.font: Theme.subheadline
    title.opacity: 1
    focusRing.anchors.fill: shape

    Rectangle {
        id: shape

        z: -1
        y: (parent.height - height) / 2
        width: parent.width
        height: root.title.implicitHeight + 12
        radius: 8
        color: root.down ? Theme.fillPressed : Theme.fill
    }
}
