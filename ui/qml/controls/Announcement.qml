import QtQuick

/// A text that a screen reader reads out as soon as it becomes visible. It draws nothing.
Item {
    required property string text

    width: 1
    height: 1
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
}
