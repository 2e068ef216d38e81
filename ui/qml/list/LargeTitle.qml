import QtQuick
import MirrowvaleAuthenticator

/// The title of a page, at its top, until it is scrolled away.
Item {
    id: root

    required property string text
    required property real inset

    implicitHeight: title.implicitHeight + Theme.spacing

    Text {
        id: title

        anchors { left: parent.left; leftMargin: root.inset; right: parent.right; rightMargin: root.inset }
        text: root.text
        font: Theme.largeTitle
        color: Theme.primary
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.smallestText
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
    }
}
