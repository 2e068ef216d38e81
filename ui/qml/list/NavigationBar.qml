import QtQuick
import MirrowvaleAuthenticator

/// The bar at the top of a page: its title between what is at the leading and at the trailing end.
Item {
    id: root

    required property string title
    property real titleOpacity: 1
    property bool lined: false

    /// The width of each end.
    property real leadingWidth: 0
    property real trailingWidth: 0

    implicitHeight: Math.max(Theme.target, title.implicitHeight + 2 * Theme.spacing)

    Text {
        id: title

        // In the middle of the bar, or as near to it as its ends leave room.
        readonly property real leftEnd: Math.max(Theme.mirrored ? root.trailingWidth : root.leadingWidth, Theme.spacing)
        readonly property real rightEnd: Math.max(Theme.mirrored ? root.leadingWidth : root.trailingWidth, Theme.spacing)

        x: Math.max(leftEnd, Math.min((root.width - width) / 2, root.width - rightEnd - width))
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, root.width - leftEnd - rightEnd)
        text: root.title
        font: Theme.barTitle
        color: Theme.primary
        opacity: root.titleOpacity
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.smallestText
        wrapMode: Text.WordWrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Hairline {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        visible: root.lined
    }
}
