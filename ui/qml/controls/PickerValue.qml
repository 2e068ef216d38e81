import QtQuick
import MirrowvaleAuthenticator

/// A picker's label and what is chosen.
Item {
    id: root

    required property string label
    required property string choice
    property bool pressed: false

    implicitHeight: label.implicitHeight

    Text {
        id: label

        anchors {
            left: parent.left
            right: value.left
            rightMargin: Theme.spacing
            verticalCenter: parent.verticalCenter
        }
        text: root.label
        font: Theme.body
        color: Theme.primary
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
    }

    Text {
        id: value

        anchors { right: chevrons.left; rightMargin: 4; verticalCenter: parent.verticalCenter }
        text: root.choice
        textFormat: Text.PlainText
        font: Theme.body
        color: Theme.secondary
        opacity: root.pressed ? 0.5 : 1
    }

    Symbol {
        id: chevrons

        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        size: 16 * Theme.textScale
        name: "chevron.up.chevron.down"
        color: Theme.secondary
    }
}
