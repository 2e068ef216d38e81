import QtQuick

/// A text that a screen reader reads.
Text {
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
