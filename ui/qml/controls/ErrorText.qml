import QtQuick
import MirrowvaleAuthenticator

/// A failure's message as it stands.
Text {
    id: root

    /// Has a screen reader read the message out, also where it is the same again.
    function announce(): void {
        announcement.visible = false
        announcement.visible = text.length > 0
    }

    padding: Theme.padding
    topPadding: 12
    bottomPadding: 12
    font: Theme.body
    color: Theme.red
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft

    Announcement {
        id: announcement

        text: root.text
    }
}
