import QtQuick
import MirrowvaleAuthenticator

/// The bar at the top of a page: its title between what stands at the leading and at the trailing end.
Item {
    id: root

    required property string title
    property real titleOpacity: 1
    property bool lined: false
    default property alias items: slots.data

    /// The width that each end takes up.
    property real leadingWidth: 0
    property real trailingWidth: 0

    implicitHeight: Math.max(Theme.target, title.implicitHeight + 2 * Theme.spacing)

    Text {
        id: title

        anchors.centerIn: parent
        width: Math.min(implicitWidth, root.width - 2 * Math.max(root.leadingWidth, root.trailingWidth, Theme.spacing))
        text: root.title
        font: Theme.headline
        color: Theme.primary
        opacity: root.titleOpacity
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Item {
        id: slots

        anchors.fill: parent
    }

    Hairline {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        visible: root.lined
    }
}
