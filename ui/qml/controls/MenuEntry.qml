import QtQuick
import MirrowvaleAuthenticator

/// One entry of a menu. Arrows move among them; the chosen one of several options is ticked.
PlainButton {
    id: root

    required property PopupMenu menu

    /// The menu has been closed for it.
    signal chosen

    /// Where the label begins, after the tick's place in a menu of options.
    readonly property real labelLeft: 12 + (checkable ? tick.width + 10 : 0)

    width: parent?.width ?? 0
    implicitWidth: Math.max(Theme.target, labelLeft + Math.ceil(label.implicitWidth) + 12)
    implicitHeight: Math.max(Theme.target, label.height + 20)
    inMenu: true
    activeFocusOnTab: menu.takesFocus
    onClicked: {
        menu.close()
        chosen()
    }
    Keys.onUpPressed: root.nextItemInFocusChain(false).forceActiveFocus(Qt.OtherFocusReason)
    Keys.onDownPressed: root.nextItemInFocusChain(true).forceActiveFocus(Qt.OtherFocusReason)

    Rectangle {
        anchors.fill: parent
        radius: Theme.cornerRadius
        color: Theme.highlight
        visible: root.down || root.hovered || root.activeFocus
    }

    Symbol {
        id: tick

        anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
        size: 18 * Theme.textScale
        name: "checkmark"
        color: Theme.primary
        visible: root.checked
    }

    WholeText {
        id: label

        anchors { left: parent.left; leftMargin: root.labelLeft; right: parent.right; rightMargin: 12 }
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        font: Theme.body
        color: root.enabled ? Theme.primary : Theme.disabled
    }
}
