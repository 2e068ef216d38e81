import QtQuick
import MirrowvaleAuthenticator

/// A text, drawn as it is, on as many lines as it needs.
Text {
    color: Theme.primary
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft
}
