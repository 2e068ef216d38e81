import QtQuick
import MirrowvaleAuthenticator

/// A number that is a row of a form: its label, and a button for each direction.
FocusScope {
    id: root

    required property string label
    required property int value
    required property int from
    required property int to
    required property int stepSize

    signal stepped(int value)

    implicitHeight: Math.max(Theme.target + 2, labelText.implicitHeight + 24)
    Accessible.role: Accessible.Grouping
    Accessible.name: label

    RowSeparator { }

    Label {
        id: labelText

        anchors {
            left: parent.left
            leftMargin: Theme.padding
            right: buttons.left
            rightMargin: Theme.spacing
            verticalCenter: parent.verticalCenter
        }
        text: root.label
        font: Theme.body
        color: Theme.primary
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
    }

    Rectangle {
        anchors.centerIn: buttons
        width: buttons.width
        height: 32
        radius: 8
        color: Theme.fillOnCard

        Rectangle {
            anchors.centerIn: parent
            width: 1
            height: 18
            color: Theme.separator
        }
    }

    Row {
        id: buttons

        anchors { right: parent.right; rightMargin: Theme.padding; verticalCenter: parent.verticalCenter }

        StepperButton {
            symbol: "minus"
            text: qsTr("Decrement")
            subject: root.label
            enabled: root.value > root.from
            onClicked: root.stepped(root.value - root.stepSize)
        }

        StepperButton {
            symbol: "plus"
            text: qsTr("Increment")
            subject: root.label
            enabled: root.value < root.to
            onClicked: root.stepped(root.value + root.stepSize)
        }
    }
}
