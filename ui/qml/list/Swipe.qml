import QtQuick
import MirrowvaleAuthenticator

/// Moves a row away from its trailing edge, and lets it settle there or back.
DragHandler {
    id: root

    /// The offset of an open row.
    required property real extent
    /// Whether the row is open, about to be, or being swiped.
    required property bool open

    /// How far the row is moved away from its trailing edge.
    property real offset: 0
    readonly property int openingDirection: Theme.mirrored ? 1 : -1
    readonly property real flickSpeed: 300 // points a second
    property real start: 0

    /// The row is swiped, or settles.
    ///
    /// @param opens  whether it is open from now on
    signal moved(bool opens)

    readonly property NumberAnimation settling: NumberAnimation {
        target: root
        property: "offset"
        duration: Theme.moderate
        easing.type: Easing.OutCubic
    }

    function settle(opens: bool): void {
        moved(opens)
        settling.to = opens ? extent : 0
        settling.restart()
    }

    function closeAtOnce(): void {
        settling.stop()
        offset = 0
    }

    function begin(): void {
        settling.stop()
        start = offset
        moved(true)
    }

    function follow(): void {
        const distance = start + activeTranslation.x * openingDirection
        const beyond = Math.max(0, distance - extent)
        offset = Math.max(0, Math.min(distance, extent)) + beyond / 4
    }

    function opens(): bool {
        const speed = centroid.velocity.x * openingDirection
        return speed > flickSpeed || (speed > -flickSpeed && offset > extent / 2)
    }

    target: null
    yAxis.enabled: false
    onExtentChanged: if (offset > 0 && open && !settling.running) offset = extent
    onActiveChanged: active ? begin() : settle(opens())
    onActiveTranslationChanged: if (active) follow()
}
