import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator

/// The behaviour that all buttons share: they react to Return as to the space bar, and show the keyboard's focus.
T.Button {
    id: root

    /// What the button acts on, where its title alone does not tell.
    property string subject

    property alias focusRing: ring

    implicitWidth: Math.max(Theme.target, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Theme.target, implicitContentHeight + topPadding + bottomPadding)
    focusPolicy: Qt.TabFocus
    Accessible.name: text
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    FocusRing {
        id: ring

        visible: root.visualFocus
    }
}
