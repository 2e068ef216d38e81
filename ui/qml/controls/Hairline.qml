import QtQuick
import MirrowvaleAuthenticator

/// A separator of one device pixel.
Rectangle {
    height: 1 / Screen.devicePixelRatio
    color: Theme.separator
}
