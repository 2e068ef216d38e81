import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Items

/// What all buttons share: their least size, how a screen reader reads them, and the focus ring.
ButtonItem {
    id: root

    property alias focusRing: ring
    property font font

    implicitWidth: Math.max(Theme.target, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Theme.target, implicitContentHeight)
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: text

    FocusRing {
        id: ring

        visible: root.visualFocus
    }
}
