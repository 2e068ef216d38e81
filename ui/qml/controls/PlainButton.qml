import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Items

/// What all buttons share: their least size, how a screen reader reads them, and the focus ring.
ButtonItem {
    id: root

    property alias focusRing: ring

    implicitWidth: Theme.target
    implicitHeight: Theme.target
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: subject

    FocusRing {
        id: ring

        z: 1
        visible: root.visualFocus
    }
}
