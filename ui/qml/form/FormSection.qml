pragma ComponentBehavior: Bound

import QtQuick
import MirrowvaleAuthenticator

/// Rows on one card, separated by hairlines, under a header where there is one.
Column {
    id: root

    property string header
    default property alias rows: column.data

    /// The row around an item, if any.
    function rowAround(item: Item): Item {
        while (item && item.parent !== column) {
            item = item.parent
        }
        return item
    }

    spacing: Theme.spacing

    WholeText {
        x: Theme.padding
        width: parent.width - 2 * Theme.padding
        visible: root.header.length > 0
        text: root.header
        font: Theme.footnote
        color: Theme.secondary
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Rectangle {
        width: parent.width
        height: column.height
        radius: Theme.cornerRadius
        color: Theme.card

        Column {
            id: column

            width: parent.width
        }

        Repeater {
            model: column.children.length - 1

            Hairline {
                required property int index

                anchors { left: parent.left; leftMargin: Theme.padding; right: parent.right }
                y: column.children[index + 1].y
            }
        }
    }
}
