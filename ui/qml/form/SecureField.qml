import QtQuick
import MirrowvaleAuthenticator

/// A masked line of text that is a row of a form.
FormField {
    echoMode: TextInput.Password
    inputMethodHints: Qt.ImhUppercaseOnly | Qt.ImhNoPredictiveText | Qt.ImhSensitiveData
}
