import QtQuick
import MirrowvaleAuthenticator

/// A picker's label and what is chosen.
Item {
    id: root

    required property string label
    required property string choice
    property bool pressed: false

    readonly property real besideLabel: value.implicitWidth + 4 + chevrons.width + Theme.spacing

    /// Whether the choice is below the label, having no space beside it.
    readonly property bool stacked: label.implicitWidth + besideLabel > width

    implicitHeight: label.height + (stacked ? 4 + value.height : 0)

    WholeText {
        id: label

        anchors {
            left: parent.left
            verticalCenter: parent.verticalCenter
            verticalCenterOffset: root.stacked ? -(value.height + 4) / 2 : 0
        }
        width: root.stacked ? root.width : root.width - root.besideLabel
        text: root.label
        font: Theme.body
    }

    Text {
        id: value

        anchors {
            right: chevrons.left
            rightMargin: 4
            verticalCenter: parent.verticalCenter
            verticalCenterOffset: root.stacked ? (label.height + 4) / 2 : 0
        }
        text: root.choice
        textFormat: Text.PlainText
        font: Theme.body
        color: Theme.secondary
        opacity: root.pressed ? 0.5 : 1
    }

    Symbol {
        id: chevrons

        anchors { right: parent.right; verticalCenter: value.verticalCenter }
        size: 16 * Theme.textScale
        name: "chevron.up.chevron.down"
        color: Theme.secondary
    }
}
