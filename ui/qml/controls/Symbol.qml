import QtQuick
import MirrowvaleAuthenticator

/// One of the application's symbols in one colour.
Image {
    id: root

    required property string name
    property color color: Theme.tint
    property real size: Theme.symbolSize * Theme.textScale

    width: size
    height: size
    sourceSize.width: Math.round(size * Screen.devicePixelRatio)
    source: "image://symbol/" + name + "/" + color
}
