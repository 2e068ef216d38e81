import QtQuick
import MirrowvaleAuthenticator

/// All options of a picker.
ListView {
    required property string choice

    implicitHeight: contentHeight
    interactive: false
    Accessible.role: Accessible.PopupMenu
}
