import QtQuick

/// A part of a row that is made when it is needed; it finds its row here.
Loader {
    required property Item row
}
