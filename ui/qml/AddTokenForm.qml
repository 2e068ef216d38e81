import QtQuick
import MirrowvaleAuthenticator

/// The fields of the add form, in sections. Pulled down at its top, it reports how far.
Flickable {
    id: root

    required property AddTokenView form

    signal pulled(real distance)
    signal letGo(real velocity)

    /// Puts the keyboard where a copied URI goes.
    function start(): void {
        uri.forceActiveFocus(Qt.OtherFocusReason)
    }

    /// Brings a field into sight when the keyboard reaches it.
    function reveal(item: Item): void {
        const top = item.mapToItem(sections, 0, 0).y
        const seen = height - covered
        if (top < contentY) {
            contentY = Math.max(0, top - Theme.padding)
        } else if (top + item.height > contentY + seen) {
            contentY = Math.min(contentHeight - seen, top + item.height - seen + Theme.padding)
        }
    }

    function revealFocus(): void {
        for (const field of [uri, issuer, account, secret]) {
            if (field.activeFocus) {
                reveal(field)
            }
        }
    }

    /// Whether a new message is to be in sight, once it has its place.
    property bool bringsMessage: false

    function revealMessage(): void {
        if (bringsMessage) {
            reveal(message)
        }
    }

    /// How far an on-screen keyboard reaches over the form.
    readonly property real covered: InputMethod.visible
        ? Math.max(0, mapToItem(null, 0, height).y - InputMethod.keyboardRectangle.y) : 0

    contentWidth: width
    contentHeight: sections.height + 2 * Theme.padding
    bottomMargin: covered
    onCoveredChanged: revealFocus()
    onContentHeightChanged: revealMessage()
    onMovementStarted: bringsMessage = false
    flickableDirection: Flickable.VerticalFlick
    boundsBehavior: Flickable.DragOverBounds
    boundsMovement: Flickable.StopAtBounds
    clip: true
    // The content follows a pull over its top at half its speed; the sheet goes with the finger.
    onVerticalOvershootChanged: if (dragging && verticalOvershoot < 0) pulled(-2 * verticalOvershoot)
    onDraggingChanged: if (!dragging) letGo(-verticalVelocity)

    Connections {
        target: root.form

        function onErrorChanged(): void {
            message.announce()
            root.bringsMessage = true
            root.revealMessage()
        }
    }

    Column {
        id: sections

        x: Theme.padding
        y: Theme.padding
        width: root.width - 2 * Theme.padding
        spacing: Theme.padding + Theme.spacing

        FormSection {
            width: parent.width
            header: qsTr("Import")

            GrowingField {
                id: uri

                width: parent.width
                placeholder: qsTr("otpauth:// URI")
                text: root.form.importURI
                inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
                onTextChanged: root.form.importURI = text
                onActiveFocusChanged: if (activeFocus) root.reveal(uri)
            }

            FormButton {
                width: parent.width
                text: qsTr("Import URI")
                enabled: root.form.canImport
                onClicked: root.form.importFromURI()
            }
        }

        FormSection {
            width: parent.width
            header: qsTr("Manual token")

            FormField {
                id: issuer

                width: parent.width
                placeholder: qsTr("Issuer")
                text: root.form.issuer
                onTextChanged: root.form.issuer = text
                onActiveFocusChanged: if (activeFocus) root.reveal(issuer)
            }

            FormField {
                id: account

                width: parent.width
                placeholder: qsTr("Account")
                text: root.form.account
                inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
                onTextChanged: root.form.account = text
                onActiveFocusChanged: if (activeFocus) root.reveal(account)
            }

            SecureField {
                id: secret

                width: parent.width
                placeholder: qsTr("Base32 secret")
                onTextChanged: root.form.secret = text
                onActiveFocusChanged: if (activeFocus) root.reveal(secret)
            }

            Picker {
                id: algorithm

                width: parent.width
                label: qsTr("Algorithm")
                options: root.form.algorithms
                choice: root.form.algorithm
                onChosen: option => root.form.algorithm = option
                onActiveFocusChanged: if (activeFocus) root.reveal(algorithm)
            }

            Stepper {
                id: digits

                width: parent.width
                label: qsTr("Digits: %1").arg(value)
                value: root.form.digits
                from: root.form.digitsRange.from
                to: root.form.digitsRange.to
                stepSize: root.form.digitsRange.step
                onStepped: value => root.form.digits = value
                onActiveFocusChanged: if (activeFocus) root.reveal(digits)
            }

            Stepper {
                id: period

                width: parent.width
                label: qsTr("Period: %1s").arg(value)
                value: root.form.period
                from: root.form.periodRange.from
                to: root.form.periodRange.to
                stepSize: root.form.periodRange.step
                onStepped: value => root.form.period = value
                onActiveFocusChanged: if (activeFocus) root.reveal(period)
            }
        }

        FormSection {
            width: parent.width
            visible: root.form.error.length > 0

            ErrorText {
                id: message

                width: parent.width
                text: root.form.error
            }
        }
    }
}
