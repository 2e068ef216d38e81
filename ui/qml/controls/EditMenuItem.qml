import QtQuick
import MirrowvaleAuthenticator

/// One thing that an edit menu offers.
PlainButton {
    id: root

    width: parent?.width ?? 0
    implicitHeight: Math.max(Theme.target, implicitContentHeight + 20)
    font: Theme.body
    leftPadding: Theme.padding
    rightPadding: Theme.padding
    activeFocusOnTab: false
    focusable: false

    contentItem: Text {
        text: root.text
        font: root.font
        color: Theme.primary
        wrapMode: Text.Wrap
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignLeft
    }
    background: Rectangle {
        radius: Theme.cornerRadius
        color: Theme.highlight
        visible: root.down
    }
}
