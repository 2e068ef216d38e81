import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator

/// A surface that comes up beside what it belongs to, and within the window.
T.Popup {
    id: root

    /// Whether it comes up above what it belongs to where there is space: a finger or a keyboard may cover what is below.
    property bool prefersAbove: false

    /// What it belongs to, in the parent's coordinates.
    property rect target
    property real spaceAbove: 0
    property real spaceBelow: 0

    readonly property real gap: 4
    readonly property bool above: height <= spaceAbove && (prefersAbove || height > spaceBelow)

    function openBeside(place: rect): void {
        const top = parent.mapToItem(null, place.x, place.y).y
        target = place
        spaceAbove = top - gap - margins
        spaceBelow = parent.Window.height - top - place.height - gap - margins
        open()
    }

    x: target.x + (target.width - width) / 2
    y: above ? target.top - gap - height : target.bottom + gap
    margins: Theme.spacing
    padding: 4

    background: Rectangle {
        radius: Theme.cornerRadius + 4
        color: Theme.menu
        border.width: 1
        border.color: Theme.separator
    }
}
