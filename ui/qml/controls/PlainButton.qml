import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator

/// The behaviour that all buttons share: they react to Return as to the space bar, and show the keyboard's focus.
T.Button {
    id: root

    property alias focusRing: ring

    implicitWidth: Math.max(Theme.target, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Theme.target, implicitContentHeight + topPadding + bottomPadding)
    focusPolicy: Qt.TabFocus
    Accessible.name: text
    // What is out of sight can still be reached by assistive technology.
    Accessible.onPressAction: if (enabled && visible) root.clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    FocusRing {
        id: ring

        visible: root.visualFocus
    }
}
