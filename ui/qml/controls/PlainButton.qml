import QtQuick
import MirrowvaleAuthenticator

/// What all buttons share: their least size, how a voice reads them, and that they show the keyboard's focus.
ButtonItem {
    id: root

    /// What the button acts on, where its title alone does not tell.
    property string subject

    property bool opensMenu: false

    property alias focusRing: ring
    property font font

    implicitWidth: Math.max(Theme.target, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Theme.target, implicitContentHeight)
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: text

    FocusRing {
        id: ring

        visible: root.visualFocus
    }
}
