import QtQuick
import QtQuick.Templates as T
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Desktop

/// What can be done with a text without a keyboard. It leaves focus in the text.
PopupMenu {
    id: root

    /// The toolkit's fields of one line and of many share no type.
    required property var field

    readonly property bool masked: field.echoMode !== undefined && field.echoMode !== TextInput.Normal
    readonly property int selectionLength: field.selectionEnd - field.selectionStart
    readonly property bool canTake: selectionLength > 0 && !masked
    readonly property bool canSelectAll: selectionLength < field.length && !field.readOnly
    readonly property bool offersAny: canTake || canSelectAll || field.canPaste

    readonly property Flickable scrolling: flickableAround(field.parent)

    /// Where the field was pressed.
    property point place
    property real heightAbovePlace: 0

    readonly property real gap: 16
    readonly property bool roomAbove: heightAbovePlace - gap - height >= margins

    function flickableAround(item: Item): Flickable {
        return item === null || item instanceof Flickable ? item as Flickable : flickableAround(item.parent)
    }

    function openAt(x: real, y: real): void {
        if (offersAny) {
            place = Qt.point(x, y)
            heightAbovePlace = field.mapToItem(null, place).y
            open()
        }
    }

    x: place.x - width / 2
    y: roomAbove ? place.y - gap - height : place.y + gap
    width: Math.min(180 * Theme.textScale, field.width)
    height: Math.min(implicitContentHeight + 2 * padding, field.Window.height - 2 * margins)
    closePolicy: T.Popup.CloseOnPressOutside
    onOffersAnyChanged: if (!offersAny) close()

    contentItem: Flickable {
        implicitHeight: contentHeight
        contentHeight: contentItem.childrenRect.height
        interactive: contentHeight > height
        clip: interactive

        Column {
            width: parent.width
            LayoutMirroring.enabled: Theme.mirrored
            LayoutMirroring.childrenInherit: true

            EditMenuItem {
                text: qsTr("Cut")
                visible: root.canTake && !root.field.readOnly
                onClicked: {
                    root.close()
                    Pasteboard.setString(root.field.selectedText)
                    root.field.remove(root.field.selectionStart, root.field.selectionEnd)
                }
            }

            EditMenuItem {
                text: qsTr("Copy")
                visible: root.canTake
                onClicked: {
                    root.close()
                    Pasteboard.setString(root.field.selectedText)
                }
            }

            EditMenuItem {
                text: qsTr("Paste")
                visible: root.field.canPaste
                onClicked: {
                    root.close()
                    root.field.paste()
                }
            }

            EditMenuItem {
                text: qsTr("Select All")
                visible: root.canSelectAll
                onClicked: {
                    root.close()
                    root.field.selectAll()
                }
            }
        }
    }

    Connections {
        target: root.field

        function onActiveFocusChanged(): void {
            root.close()
        }

        function onTextChanged(): void {
            root.close()
        }

        function onCursorPositionChanged(): void {
            root.close()
        }
    }

    Connections {
        target: root.scrolling

        function onContentYChanged(): void {
            root.close()
        }
    }

    Shortcut {
        sequences: ["Escape"]
        enabled: root.visible
        onActivated: root.close()
    }
}
