import QtQuick
import MirrowvaleAuthenticator.Items

/// A part of a row that is made when it is needed; it finds its row here.
Loader {
    required property TokenRowItem row
}
