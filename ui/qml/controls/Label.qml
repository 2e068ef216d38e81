import QtQuick
import MirrowvaleAuthenticator

/// A text that a screen reader reads.
WholeText {
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
