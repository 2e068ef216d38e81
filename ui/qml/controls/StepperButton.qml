import QtQuick
import MirrowvaleAuthenticator

/// One half of a stepper. It repeats while it is held.
PlainButton {
    id: root

    required property string symbol

    implicitWidth: 48
    topInset: 6
    bottomInset: 6
    autoRepeat: true
    focusRing.anchors.fill: background

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            size: 16 * Math.min(Theme.textScale, 1.5)
            name: root.symbol
            color: root.enabled ? Theme.primary : Theme.disabled
        }
    }
    background: Rectangle {
        radius: 8
        color: Theme.highlight
        opacity: root.down ? 1 : 0
    }
}
