import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator

/// The surface of a menu, within the window whatever it is asked.
T.Popup {
    height: implicitContentHeight + 2 * padding
    margins: Theme.spacing
    padding: 4

    background: Rectangle {
        radius: Theme.cornerRadius + 4
        color: Theme.menu
        border.width: 1
        border.color: Theme.separator
    }
}
