import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Screens

/// A number that is a row of a form: its label, and a button for each direction.
FocusScope {
    id: root

    required property string label
    required property int value
    required property stepperRange range

    signal stepped(int value)

    /// Whether the buttons are below the label, having no space beside it.
    readonly property bool stacked: labelText.implicitWidth + Theme.spacing + buttons.width + 2 * Theme.padding > width

    /// A button that comes to its limit passes focus to the other one.
    function step(by: int, button: StepperButton, other: StepperButton): void {
        const showed = button.visualFocus
        stepped(value + by)
        if (showed && !button.enabled) {
            other.forceActiveFocus(Qt.TabFocusReason)
        }
    }

    implicitHeight: stacked ? 12 + labelText.height + buttons.height : Math.max(Theme.target + 2, labelText.height + 24)
    Accessible.role: Accessible.Grouping
    Accessible.name: label

    Label {
        id: labelText

        anchors {
            left: parent.left
            leftMargin: Theme.padding
            top: parent.top
            topMargin: root.stacked ? 12 : (root.height - height) / 2
        }
        width: root.width - 2 * Theme.padding - (root.stacked ? 0 : buttons.width + Theme.spacing)
        text: root.label
        font: Theme.body
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

        anchors {
            right: parent.right
            rightMargin: Theme.padding
            bottom: parent.bottom
            bottomMargin: root.stacked ? 0 : (root.height - height) / 2
        }

        StepperButton {
            id: minus

            symbol: "minus"
            text: qsTr("Decrement")
            subject: root.label
            enabled: root.value > root.range.from
            onClicked: root.step(-root.range.step, minus, plus)
        }

        StepperButton {
            id: plus

            symbol: "plus"
            text: qsTr("Increment")
            subject: root.label
            enabled: root.value < root.range.to
            onClicked: root.step(root.range.step, plus, minus)
        }
    }
}
