pragma ComponentBehavior: Bound

import QtQuick
import MirrowvaleAuthenticator

/// The options of a picker's menu, one below the other. Arrows move among them.
Column {
    id: root

    required property var options
    required property string choice

    signal chosen(string option)

    LayoutMirroring.enabled: Theme.mirrored
    LayoutMirroring.childrenInherit: true

    Repeater {
        model: root.options

        PickerOption {
            width: root.width
            checked: root.choice === text
            onClicked: root.chosen(text)
        }
    }
}
