import QtQuick
import MirrowvaleAuthenticator

/// A masked line of text that is a row of a form. What it holds can be typed and read by the form alone.
FocusScope {
    id: root

    required property string placeholder

    signal edited(string text)

    implicitHeight: field.implicitHeight
    // The field itself tells others no name, being masked.
    Accessible.role: Accessible.Grouping
    Accessible.name: placeholder

    FormField {
        id: field

        // Assistive technology reads a field's property of this name: it gets what is drawn.
        readonly property string text: displayText

        anchors.fill: parent
        focus: true
        placeholder: root.placeholder
        echoMode: TextInput.Password
        inputMethodHints: Qt.ImhUppercaseOnly | Qt.ImhNoPredictiveText | Qt.ImhSensitiveData
        onDisplayTextChanged: root.edited(getText(0, length))
    }

    RowSeparator { }
}
