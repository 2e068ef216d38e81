import QtQuick
import MirrowvaleAuthenticator

/// A button of a bar that is its title alone.
PlainButton {
    id: root

    property alias font: title.font

    implicitWidth: Math.max(Theme.target, title.implicitWidth + 2 * Theme.padding)
    implicitHeight: Math.max(Theme.target, title.implicitHeight)

    Text {
        id: title

        anchors { fill: parent; leftMargin: Theme.padding; rightMargin: Theme.padding }
        text: root.text
        font: Theme.barButton
        color: root.enabled ? Theme.tint : Theme.disabled
        opacity: root.down ? 0.4 : 1
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignHCenter
    }
}
