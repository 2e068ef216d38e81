import QtQuick
import MirrowvaleAuthenticator

/// A button that is a row of a form.
PlainButton {
    id: root

    implicitHeight: Math.max(Theme.target, title.implicitHeight + 22)
    focusRing.anchors.margins: 2

    Rectangle {
        anchors.fill: parent
        radius: Theme.cornerRadius
        color: Theme.fillPressed
        visible: root.down
    }

    Text {
        id: title

        anchors { fill: parent; leftMargin: Theme.padding; rightMargin: Theme.padding }
        text: root.text
        font: Theme.body
        color: root.enabled ? Theme.tint : Theme.disabled
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignLeft
    }
}
