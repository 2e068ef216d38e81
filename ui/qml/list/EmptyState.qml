import QtQuick
import MirrowvaleAuthenticator

/// What is drawn instead of a list without tokens.
Flickable {
    id: root

    contentHeight: Math.max(height, texts.height + Theme.padding)
    interactive: contentHeight > height
    clip: true

    Column {
        id: texts

        y: (root.contentHeight - height) / 2
        width: root.width
        spacing: 12

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "key.horizontal"
            size: 52 * Theme.textScale
            color: Theme.secondary
        }

        Label {
            width: parent.width
            text: qsTr("No tokens yet")
            font: Theme.title3
            horizontalAlignment: Text.AlignHCenter
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, Theme.readableWidth) - 2 * Theme.padding
            text: qsTr("Add an otpauth URI or enter a shared secret to create your first Mirrowvale Authenticator token.")
            font: Theme.body
            color: Theme.secondary
            horizontalAlignment: Text.AlignHCenter
        }
    }
}
