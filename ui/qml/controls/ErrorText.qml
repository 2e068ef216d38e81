import QtQuick
import MirrowvaleAuthenticator

/// A failure's message as it stands.
Text {
    padding: Theme.padding
    topPadding: 12
    bottomPadding: 12
    font: Theme.body
    color: Theme.red
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
}
