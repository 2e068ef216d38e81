import QtQuick
import MirrowvaleAuthenticator

/// One half of a stepper. It repeats while it is held.
PlainButton {
    id: root

    required property string symbol

    implicitWidth: 48
    autoRepeat: true
    focusRing.anchors.fill: shape

    Rectangle {
        id: shape

        anchors { fill: parent; topMargin: 6; bottomMargin: 6 }
        radius: 8
        color: Theme.highlight
        opacity: root.down ? 1 : 0
    }

    Symbol {
        anchors.centerIn: parent
        size: 16 * Math.min(Theme.textScale, 1.5)
        name: root.symbol
        color: root.enabled ? Theme.primary : Theme.disabled
    }
}
