import QtQuick
import MirrowvaleAuthenticator

/// Shows what has focus.
Rectangle {
    anchors.fill: parent
    anchors.margins: -2
    radius: Theme.cornerRadius
    color: Theme.clear
    border.color: Theme.tint
    border.width: 2
}
