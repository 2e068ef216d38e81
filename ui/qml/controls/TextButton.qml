import QtQuick
import MirrowvaleAuthenticator

/// A button of a bar that is its title alone.
PlainButton {
    id: root

    font: Theme.barButton
    leftPadding: Theme.padding
    rightPadding: Theme.padding

    contentItem: Text {
        text: root.text
        font: root.font
        color: root.enabled ? Theme.tint : Theme.disabled
        opacity: root.down ? 0.4 : 1
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignHCenter
    }
}
