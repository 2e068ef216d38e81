import QtQuick
import MirrowvaleAuthenticator

/// Separates a row of a form from the one above it.
Hairline {
    anchors { top: parent.top; left: parent.left; leftMargin: Theme.padding; right: parent.right }
    visible: parent.y > 0
}
