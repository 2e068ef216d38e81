import QtQuick

/// The smallest window that ticks: seven texts of two digits, all different each second.
Window {
    id: root

    property int second: 0

    width: 390
    height: 844
    visible: true

    Timer {
        interval: 1000
        running: true
        repeat: true
        onTriggered: ++root.second
    }

    Column {
        Repeater {
            model: 7

            Text {
                required property int index

                height: 110
                text: 10 + (root.second + index) % 90
            }
        }
    }
}
