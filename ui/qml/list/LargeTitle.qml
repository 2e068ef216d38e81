import QtQuick
import MirrowvaleAuthenticator

/// The title of a page, at its top, until it is scrolled away.
Text {
    required property real inset

    leftPadding: inset
    rightPadding: inset
    bottomPadding: Theme.spacing
    font: Theme.largeTitle
    color: Theme.primary
    fontSizeMode: Text.HorizontalFit
    minimumPixelSize: Theme.smallestText
    wrapMode: Text.NoWrap
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft
}
