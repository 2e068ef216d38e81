import QtQuick
import MirrowvaleAuthenticator

/// The name of a field that is empty.
Text {
    color: Theme.placeholder
    fontSizeMode: Text.HorizontalFit
    minimumPixelSize: Theme.smallestText
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft
}
