import QtQuick
import MirrowvaleAuthenticator

/// One option of a picker's menu; the chosen one is marked.
PlainButton {
    id: root

    required property string modelData
    required checked

    checkable: true
    implicitHeight: Math.max(Theme.target, implicitContentHeight + 20)
    leftPadding: 12
    rightPadding: 12
    text: modelData
    font: Theme.body
    onVisibleChanged: if (visible && checked) forceActiveFocus(Qt.PopupFocusReason)
    Keys.onUpPressed: root.nextItemInFocusChain(false).forceActiveFocus(Qt.OtherFocusReason)
    Keys.onDownPressed: root.nextItemInFocusChain(true).forceActiveFocus(Qt.OtherFocusReason)

    contentItem: Item {
        implicitHeight: label.height

        Symbol {
            id: mark

            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            size: 18 * Theme.textScale
            name: "checkmark"
            color: Theme.primary
            visible: root.checked
        }

        Text {
            id: label

            anchors { left: mark.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
            text: root.text
            textFormat: Text.PlainText
            font: root.font
            color: Theme.primary
        }
    }
    background: Rectangle {
        color: root.down || root.activeFocus ? Theme.highlight : Theme.menu
        radius: Theme.cornerRadius
    }
}
