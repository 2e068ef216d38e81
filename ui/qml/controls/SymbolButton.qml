import QtQuick
import MirrowvaleAuthenticator

/// A button that shows a symbol; its title is its accessible name and its tooltip.
PlainButton {
    id: root

    required property string symbol
    property real symbolSize: Theme.symbolSize * Theme.textScale

    focusRing.anchors.margins: 2
    onHoveredChanged: {
        if (hovered) {
            tooltip.setSource("Tooltip.qml", { button: root })
        } else {
            tooltip.source = ""
        }
    }

    contentItem: Item {
        implicitWidth: root.symbolSize
        implicitHeight: root.symbolSize

        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            size: root.symbolSize
            color: root.enabled ? Theme.tint : Theme.disabled
            opacity: root.down ? 0.4 : 1
        }
    }

    Loader {
        id: tooltip
    }
}
