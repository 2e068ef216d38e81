import QtQuick
import MirrowvaleAuthenticator

/// One entry of a menu. Arrows move among them; the chosen one of several options is ticked.
PlainButton {
    id: root

    required property PopupMenu menu

    /// The menu has been closed for it.
    signal chosen

    width: parent?.width ?? 0
    implicitHeight: Math.max(Theme.target, implicitContentHeight + 20)
    font: Theme.body
    leftPadding: 12
    rightPadding: 12
    inMenu: true
    activeFocusOnTab: menu.takesFocus
    focusable: menu.takesFocus
    onClicked: {
        menu.close()
        chosen()
    }
    Keys.onUpPressed: root.nextItemInFocusChain(false).forceActiveFocus(Qt.OtherFocusReason)
    Keys.onDownPressed: root.nextItemInFocusChain(true).forceActiveFocus(Qt.OtherFocusReason)

    contentItem: Item {
        readonly property real besideLabel: root.checkable ? tick.width + 10 : 0

        implicitWidth: besideLabel + Math.ceil(label.implicitWidth)
        implicitHeight: label.height

        Symbol {
            id: tick

            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            size: 18 * Theme.textScale
            name: "checkmark"
            color: Theme.primary
            visible: root.checked
        }

        Text {
            id: label

            anchors { left: parent.left; leftMargin: parent.besideLabel; right: parent.right; verticalCenter: parent.verticalCenter }
            text: root.text
            textFormat: Text.PlainText
            font: root.font
            color: root.enabled ? Theme.primary : Theme.disabled
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
        }
    }
    background: Rectangle {
        radius: Theme.cornerRadius
        color: Theme.highlight
        visible: root.down || root.hovered || root.activeFocus
    }
}
