import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Screens

/// The add form, on a sheet that slides over the list screen from below.
FocusScope {
    id: root

    required property ContentView contentView
    required property AddTokenView form

    readonly property bool presented: contentView.showingAdd

    /// The panel's place: at the very top of a low window, as of a phone held sideways with its keyboard up.
    readonly property real panelTop: height < 400 ? 0 : Theme.sheetTop

    /// How far the panel is below its place.
    property real lowered: 0

    function settle(): void {
        sliding.to = presented ? 0 : height
        sliding.restart()
    }

    /// Follows a finger downwards.
    ///
    /// @param distance  from the panel's place, in points
    function drag(distance: real): void {
        if (presented) {
            sliding.stop()
            lowered = Math.max(0, distance)
        }
    }

    /// Dismisses a sheet that was drawn far or fast.
    ///
    /// @param velocity  downwards, in points a second
    function release(velocity: real): void {
        if (presented && (lowered > panel.height / 4 || (velocity > 800 && lowered > 0))) {
            form.cancel()
        } else {
            settle()
        }
    }

    focus: true
    enabled: presented
    LayoutMirroring.enabled: Theme.mirrored
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.Dialog
    Accessible.name: bar.title
    Keys.onEscapePressed: event => {
        if (!event.isAutoRepeat) { // one that is still held has closed a menu
            form.cancel()
        }
    }
    onPresentedChanged: settle()
    Component.onCompleted: {
        lowered = height // not bound: the window's height may change while the sheet is up
        settle()
    }

    NumberAnimation {
        id: sliding

        target: root
        property: "lowered"
        duration: Theme.sheetTime
        easing.type: Easing.OutCubic
        onFinished: if (!root.presented) root.contentView.discardAddTokenView()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.dim
        opacity: Theme.dimOpacity * Math.max(0, 1 - root.lowered / root.height)
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }

    Item {
        id: panel

        anchors.horizontalCenter: parent.horizontalCenter
        y: root.panelTop + root.lowered
        width: Math.min(parent.width, Theme.sheetWidth)
        height: parent.height - root.panelTop

        Rectangle {
            width: parent.width
            height: 2 * radius
            radius: Theme.sheetRadius
            color: Theme.groupedBackground
        }

        // Apart from the round corners, so that nothing behind it has to be drawn.
        Rectangle {
            anchors.fill: parent
            anchors.topMargin: Theme.sheetRadius
            color: Theme.groupedBackground
        }

        NavigationBar {
            id: bar

            anchors { top: parent.top; topMargin: Theme.spacing; left: parent.left; right: parent.right }
            title: qsTr("Add token")
            lined: fields.contentY > 0
            leadingWidth: cancel.width
            trailingWidth: save.width

            TextButton {
                id: cancel

                anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                text: qsTr("Cancel")
                onClicked: root.form.cancel()
            }

            TextButton {
                id: save

                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                text: qsTr("Save")
                title.font: Theme.barTitle
                enabled: root.form.canSave
                onClicked: fields.save()
            }

            DragHandler {
                target: null
                xAxis.enabled: false
                onActiveTranslationChanged: if (active) root.drag(activeTranslation.y)
                onActiveChanged: if (!active) root.release(centroid.velocity.y)
            }
        }

        AddTokenForm {
            id: fields

            anchors { top: bar.bottom; left: parent.left; right: parent.right; bottom: parent.bottom }
            form: root.form
            onPulled: distance => root.drag(distance)
            onLetGo: velocity => root.release(velocity)
        }
    }
}
