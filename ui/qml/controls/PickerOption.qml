import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator

/// One option of a picker's menu; the chosen one is marked.
T.ItemDelegate {
    id: root

    required property string modelData
    readonly property PickerMenu menu: ListView.view as PickerMenu

    width: menu.width
    implicitHeight: Math.max(Theme.target, implicitContentHeight + 20)
    leftPadding: 12
    text: modelData
    font: Theme.body
    highlighted: ListView.isCurrentItem
    Accessible.role: Accessible.MenuItem
    Accessible.name: text

    contentItem: Text {
        leftPadding: Theme.mirrored ? 0 : 28
        rightPadding: Theme.mirrored ? 28 : 0
        text: root.text
        textFormat: Text.PlainText
        font: root.font
        color: Theme.primary
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignLeft
    }
    background: Rectangle {
        color: root.down || root.highlighted ? Theme.highlight : Theme.menu
        radius: Theme.cornerRadius

        Symbol {
            anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
            size: 18 * Theme.textScale
            name: "checkmark"
            color: Theme.primary
            visible: root.text === root.menu.choice
        }
    }
}
