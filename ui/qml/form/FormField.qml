import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator

/// A line of text that is a row of a form.
T.TextField {
    id: root

    required property string placeholder

    maximumLength: 0x7fffffff // the toolkit's own limit would cut what is pasted
    implicitHeight: Math.max(Theme.target, contentHeight + 24)
    leftPadding: Theme.padding
    rightPadding: Theme.padding
    font: Theme.body
    color: Theme.primary
    selectionColor: Theme.selection
    selectedTextColor: Theme.primary
    verticalAlignment: TextInput.AlignVCenter
    Accessible.name: placeholder
    // Enter that is held moves on once.
    Keys.onPressed: event => event.accepted = event.isAutoRepeat && (event.key === Qt.Key_Return
                                                                     || event.key === Qt.Key_Enter)

    FieldParts { field: root }
}
