import QtQuick
import MirrowvaleAuthenticator
import MirrowvaleAuthenticator.Screens

/// The fields of the add form, in sections. Pulled down at its top, it reports how far.
Flickable {
    id: root

    required property AddTokenView form

    signal pulled(real distance)
    signal letGo(real velocity)

    /// Enter moves on as Tab does: beyond the last field, where an on-screen keyboard goes away.
    function moveOn(): void {
        focusItem.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    }

    function save(): void {
        InputMethod.commit() // what an input method still composes belongs to the field, too
        form.saveManualToken()
    }

    function importOrMoveOn(): void {
        InputMethod.commit()
        if (form.canImport) {
            form.importFromURI()
        } else {
            moveOn()
        }
    }

    /// Scrolls a part of an item into view.
    function scrollTo(item: Item, part: rect): void {
        bringsMessage = item === message
        const shown = item.mapToItem(contentItem, part)
        const seen = height - covered
        if (shown.bottom > contentY + seen) {
            contentY = Math.min(contentHeight - seen, shown.bottom - seen + Theme.padding)
        }
        if (shown.top < contentY) {
            contentY = Math.max(0, shown.top - Theme.padding)
        }
    }

    /// Scrolls the row of the form that has focus into view.
    function scrollToFocus(): void {
        const row = importing.rowAround(focusItem) ?? manual.rowAround(focusItem)
        if (row) {
            scrollTo(row, Qt.rect(0, 0, row.width, row.height))
        }
        if (uri.activeFocus) {
            scrollToCaret()
        }
    }

    /// The URI's field may be higher than what is in sight.
    function scrollToCaret(): void {
        scrollTo(uri, uri.cursorRectangle)
    }

    /// Whether the form was at its top when it was taken hold of: to scroll back there is no pull.
    property bool pulls: false

    /// Whether a new message is to be in sight, once it has its place.
    property bool bringsMessage: false

    function scrollToMessage(): void {
        scrollTo(message, Qt.rect(0, 0, message.width, message.height))
    }

    readonly property Item focusItem: Window.activeFocusItem

    /// How far an on-screen keyboard reaches over the form, which ends at the window's lower edge once it is in place.
    readonly property real covered: InputMethod.visible && InputMethod.keyboardRectangle.height > 0
        ? Math.max(0, Window.height - InputMethod.keyboardRectangle.y) : 0

    contentWidth: width
    contentHeight: sections.height + 2 * Theme.padding
    bottomMargin: covered
    onFocusItemChanged: scrollToFocus()
    onCoveredChanged: scrollToFocus()
    onHeightChanged: scrollToFocus()
    onContentHeightChanged: {
        if (bringsMessage) {
            scrollToMessage()
        } else {
            scrollToFocus()
        }
    }
    onMovementStarted: bringsMessage = false
    flickableDirection: Flickable.VerticalFlick
    boundsBehavior: Flickable.DragOverBounds
    boundsMovement: Flickable.StopAtBounds
    clip: true
    // The content follows a pull over its top at half its speed; the sheet goes with the finger.
    onVerticalOvershootChanged: if (dragging && pulls) pulled(Math.max(0, -2 * verticalOvershoot))
    onDraggingChanged: {
        if (dragging) {
            pulls = atYBeginning
        } else if (pulls) {
            letGo(-verticalVelocity)
        }
    }

    Connections {
        target: root.form

        function onErrorChanged(): void {
            announcement.visible = false // also where the message is the same again
            announcement.visible = message.text.length > 0
            root.scrollToMessage()
        }
    }

    Column {
        id: sections

        x: Theme.padding
        y: Theme.padding
        width: root.width - 2 * Theme.padding
        spacing: Theme.padding + Theme.spacing

        FormSection {
            id: importing

            width: parent.width
            header: qsTr("Import")

            GrowingField {
                id: uri

                focus: true // a copied URI goes into it
                width: parent.width
                placeholder: qsTr("otpauth:// URI")
                text: root.form.importURI
                inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText | Qt.ImhSensitiveData
                onAccepted: root.importOrMoveOn()
                onTextChanged: root.form.importURI = text
                onCursorRectangleChanged: if (activeFocus) root.scrollToCaret()
            }

            TextButton {
                id: importURI

                width: parent.width
                implicitHeight: Math.max(Theme.target, title.implicitHeight + 22)
                text: qsTr("Import URI")
                title.font: Theme.body
                title.horizontalAlignment: Text.AlignLeft
                title.opacity: 1
                focusRing.anchors.margins: 2
                enabled: root.form.canImport
                onClicked: root.importOrMoveOn()

                Rectangle {
                    z: -1
                    anchors.fill: parent
                    radius: Theme.cornerRadius
                    color: Theme.fillPressed
                    visible: importURI.down
                }
            }
        }

        FormSection {
            id: manual

            width: parent.width
            header: qsTr("Manual token")

            FormField {
                width: parent.width
                placeholder: qsTr("Issuer")
                text: root.form.issuer
                onAccepted: root.moveOn()
                onTextChanged: root.form.issuer = text
            }

            FormField {
                width: parent.width
                placeholder: qsTr("Account")
                text: root.form.account
                inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
                onAccepted: root.moveOn()
                onTextChanged: root.form.account = text
            }

            FormField {
                width: parent.width
                placeholder: qsTr("Base32 secret")
                echoMode: TextInput.Password
                inputMethodHints: Qt.ImhUppercaseOnly | Qt.ImhNoPredictiveText | Qt.ImhSensitiveData
                onAccepted: root.moveOn()
                onTextChanged: root.form.secret = text
            }

            Picker {
                width: parent.width
                text: qsTr("Algorithm")
                subject: root.form.algorithm
                options: root.form.algorithms
                onChosen: option => root.form.algorithm = option
            }

            Stepper {
                width: parent.width
                label: qsTr("Digits: %1").arg(value)
                value: root.form.digits
                range: root.form.digitsRange
                onStepped: value => root.form.digits = value
            }

            Stepper {
                width: parent.width
                label: qsTr("Period: %1s").arg(value)
                value: root.form.period
                range: root.form.periodRange
                onStepped: value => root.form.period = value
            }
        }

        FormSection {
            width: parent.width
            visible: root.form.error.length > 0

            WholeText {
                id: message

                width: parent.width
                padding: Theme.padding
                topPadding: 12
                bottomPadding: 12
                text: root.form.error
                font: Theme.body
                color: Theme.red

                Announcement {
                    id: announcement

                    text: message.text
                }
            }
        }
    }
}
