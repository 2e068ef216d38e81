import QtQuick
import MirrowvaleAuthenticator

/// A failure's message, drawn and announced.
WholeText {
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

    Announcement {
        id: announcement

        text: root.text
    }
}
