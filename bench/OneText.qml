import QtQuick

/// The smallest window that shows something.
Window {
    width: 390
    height: 844
    visible: true

    Text {
        anchors.centerIn: parent
        text: "One text"
    }
}
