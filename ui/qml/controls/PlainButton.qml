import QtQuick
import MirrowvaleAuthenticator

/// The behaviour that all buttons share: they react to Return as to the space bar, and show the keyboard's focus.
ButtonItem {
    id: root

    /// What the button acts on, where its title alone does not tell.
    property string subject

    property alias focusRing: ring
    property font font

    implicitWidth: Math.max(Theme.target, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Theme.target, implicitContentHeight)
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    FocusRing {
        id: ring

        visible: root.visualFocus
    }
}
