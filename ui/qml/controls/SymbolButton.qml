import QtQuick
import MirrowvaleAuthenticator

/// A button that shows a symbol; its title is its accessible name and its tooltip.
PlainButton {
    id: root

    required property string symbol
    readonly property alias symbolSize: drawing.size

    implicitWidth: Math.max(Theme.target, symbolSize)
    implicitHeight: implicitWidth
    focusRing.anchors.margins: 2
    onHoveredChanged: {
        if (hovered) {
            tooltip.setSource("Tooltip.qml", { button: root })
        } else {
            tooltip.source = ""
        }
    }

    Symbol {
        id: drawing

        anchors.centerIn: parent
        name: root.symbol
        color: root.enabled ? Theme.tint : Theme.disabled
        opacity: root.down ? 0.4 : 1
    }

    Loader {
        id: tooltip
    }
}
