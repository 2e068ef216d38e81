import QtQuick

/// The smallest window with a list: one text per row.
Window {
    id: root

    required property int count

    width: 390
    height: 844
    visible: true

    ListView {
        anchors.fill: parent
        model: root.count
        delegate: Text {
            required property int index

            height: 44
            text: "Row " + index
        }
    }
}
