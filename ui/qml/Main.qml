import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Items
import MirrowvaleAuthenticator.Screens

/// The window: the list screen, and the sheet over it.
Window {
    id: root

    required property ContentView contentView
    readonly property AddTokenView form: contentView.addTokenView

    minimumWidth: 320
    minimumHeight: 120 // an on-screen keyboard over a phone held sideways leaves about that
    visible: true
    title: qsTr("Mirrowvale Auth")
    color: Theme.background

    onFormChanged: {
        if (form) {
            list.closeOpenRow()
            list.selectedCode?.selectionEnded()
            sheet.setSource("form/AddTokenSheet.qml", { contentView: contentView, form: form })
            sheet.forceActiveFocus(Qt.OtherFocusReason)
        } else {
            sheet.setSource("")
            gc() // the engine may hold texts that were typed
        }
    }

    Shortcut {
        id: adding

        sequence: "Ctrl+N"
        enabled: !root.contentView.showingAdd
        onActivated: root.contentView.showingAdd = true
    }

    ScreenItem {
        id: page

        anchors.fill: parent
        enabled: !root.contentView.showingAdd
        Accessible.role: Accessible.Pane
        focus: true
        onEnabledChanged: if (enabled) forceActiveFocus(Qt.OtherFocusReason)
        LayoutMirroring.enabled: Theme.mirrored
        LayoutMirroring.childrenInherit: true

        Keys.onEscapePressed: event => {
            event.accepted = list.openRow !== null
            list.closeOpenRow()
        }

        TapHandler {
            onTapped: list.closeOpenRow()
        }

        NavigationBar {
            id: bar

            z: 1
            anchors { top: parent.top; left: parent.left; right: parent.right }
            title: root.title
            titleOpacity: root.contentView.empty ? 0 : list.titleScrolledAway
            lined: !root.contentView.empty && list.titleScrolledAway === 1
            trailingWidth: addButton.width + Theme.padding

            SymbolButton {
                id: addButton

                anchors {
                    right: parent.right
                    rightMargin: Theme.inset(root.width) - (width - symbolSize) / 2
                    verticalCenter: parent.verticalCenter
                }
                text: qsTr("Add token")
                symbol: "plus"
                key: adding.nativeText
                Keys.onDownPressed: list.rowFocus.show()
                onClicked: root.contentView.showingAdd = true
            }
        }

        TokenList {
            id: list

            anchors { top: bar.bottom; left: parent.left; right: parent.right; bottom: parent.bottom }
            clip: true
            focus: true
            visible: !root.contentView.empty
            contentView: root.contentView
            title: root.title
            focusWhenEmpty: addButton
        }

        // Sees a press before what it is meant for, and passes it on.
        MouseArea {
            z: 2
            anchors.fill: parent
            enabled: list.selectedCode !== null
            onPressed: mouse => {
                list.clearSelectionElsewhere(mapToItem(null, mouse.x, mouse.y))
                mouse.accepted = false
            }
        }

        LargeTitle {
            id: largeTitle

            anchors { top: bar.bottom; left: parent.left; right: parent.right }
            visible: root.contentView.empty
            text: root.title
            inset: Theme.inset(root.width)
        }

        Loader {
            anchors { top: largeTitle.bottom; left: parent.left; right: parent.right; bottom: parent.bottom }
            active: root.contentView.empty

            sourceComponent: EmptyState { }
        }
    }

    Loader {
        id: sheet

        anchors.fill: parent
    }
}
