import QtQuick
import MirrowvaleAuthenticator

/// What can be done with a row's token: what a screen reader offers, too.
PopupMenu {
    id: root

    property TokenRow row: null

    /// @param place  where it is asked for, from the row's left edge, in points
    function openFor(asked: TokenRow, place: real): void {
        row = asked
        parent = asked
        openFrom(asked.Window.activeFocusItem ?? asked, Qt.rect(place, 0, 0, asked.height))
    }

    x: Theme.mirrored ? target.x - width : target.x

    MenuEntry {
        menu: root
        text: qsTranslate("TokenRow", "Copy code")
        onChosen: root.row.copyRequested()
    }

    MenuEntry {
        menu: root
        visible: root.row?.offersNext ?? false
        text: qsTranslate("TokenRow", "Next")
        onChosen: root.row.nextRequested()
    }

    MenuEntry {
        menu: root
        text: qsTranslate("DeleteButton", "Delete")
        onChosen: root.row.deleteRequested()
    }
}
