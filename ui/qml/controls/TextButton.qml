import QtQuick
import MirrowvaleAuthenticator

/// A button that shows its title.
PlainButton {
    id: root

    property alias title: title

    /// The space at both sides of the title.
    property real margin: Theme.padding

    implicitWidth: Math.max(Theme.target, title.implicitWidth + 2 * margin)
    implicitHeight: Math.max(Theme.target, title.implicitHeight)
    baselineOffset: title.baselineOffset

    Text {
        id: title

        anchors { fill: parent; leftMargin: root.margin; rightMargin: root.margin }
        text: root.text
        font: Theme.barButton
        color: root.enabled ? Theme.tint : Theme.disabled
        opacity: root.down ? 0.4 : 1
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignHCenter
    }
}
