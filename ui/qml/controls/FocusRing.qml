import QtQuick
import MirrowvaleAuthenticator

/// Shows where the keyboard is.
Rectangle {
    anchors.fill: parent
    anchors.margins: -2
    radius: Theme.cornerRadius
    color: Theme.clear
    border.color: Theme.tint
    border.width: 2
}
