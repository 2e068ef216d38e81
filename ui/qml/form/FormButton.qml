import QtQuick
import MirrowvaleAuthenticator

/// A button that is a row of a form.
PlainButton {
    id: root

    implicitHeight: Math.max(Theme.target, implicitContentHeight + 22)
    font: Theme.body
    leftPadding: Theme.padding
    rightPadding: Theme.padding
    focusRing.anchors.margins: 2

    contentItem: Text {
        text: root.text
        font: root.font
        color: root.enabled ? Theme.tint : Theme.disabled
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignLeft
    }
    background: Rectangle {
        radius: Theme.cornerRadius
        color: Theme.fillPressed
        visible: root.down
    }

    RowSeparator { }
}
