import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator

/// What a button is called, and the key that does the same. It comes up once the pointer has rested on the button.
PopupSurface {
    id: root

    required property SymbolButton button
    readonly property bool pressed: button.down

    parent: button
    closePolicy: T.Popup.NoAutoClose
    padding: Theme.spacing
    width: implicitContentWidth + 2 * padding
    height: implicitContentHeight + 2 * padding
    onPressedChanged: {
        rest.stop()
        close()
    }

    contentItem: Row {
        spacing: Theme.spacing
        LayoutMirroring.enabled: Theme.mirrored

        Text {
            text: root.button.text
            font: Theme.footnote
            color: Theme.primary
        }

        Text {
            visible: text.length > 0
            text: root.button.key
            font: Theme.footnote
            color: Theme.primary
        }
    }

    Timer {
        id: rest

        running: true
        interval: 700
        onTriggered: root.openBeside(Qt.rect(0, 0, root.button.width, root.button.height))
    }
}
