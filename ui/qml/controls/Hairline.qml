import QtQuick
import MirrowvaleAuthenticator

/// A separator of one device pixel.
Rectangle {
    height: 1
    color: Theme.separator

    // A lower rectangle would be drawn a point high, which may be two pixels.
    transform: Scale { yScale: 1 / Screen.devicePixelRatio }
}
