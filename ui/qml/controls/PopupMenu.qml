import QtQuick
import MirrowvaleAuthenticator

/// A menu, as wide as its widest entry. It scrolls where the window is too low for it.
PopupSurface {
    id: root

    default property alias entries: column.data

    /// What gets focus back when the menu closes. A menu without one leaves focus where it is.
    property Item opener: null
    readonly property bool takesFocus: opener !== null

    readonly property Item focused: parent?.Window.activeFocusItem ?? null
    readonly property bool focusIsElsewhere: focused !== null && focused !== parent?.Window.contentItem

    /// Opens with focus in the option that is chosen, or in the first entry.
    function openFrom(item: Item, place: rect): void {
        opener = item
        openBeside(place)
        const items = Array.from(column.children)
        const first = items.find(item => item.checked) ?? items[0]
        first.forceActiveFocus(Qt.PopupFocusReason)
    }

    function widest(items: var): real {
        return Array.from(items).reduce((width, item) => item.visible ? Math.max(width, item.implicitWidth) : width, 0)
    }

    width: Math.min(widest(column.children) + 2 * padding, (parent?.Window.width ?? 0) - 2 * margins)
    height: Math.min(column.height + 2 * padding, (parent?.Window.height ?? 0) - 2 * margins)
    modal: takesFocus
    dim: false
    focus: takesFocus
    contentItem: content
    onActiveFocusChanged: if (!activeFocus) close()
    onClosed: {
        if (opener?.enabled && !focusIsElsewhere) {
            opener.forceActiveFocus(Qt.PopupFocusReason)
        }
    }

    readonly property Flickable content: Flickable {
        contentHeight: column.height
        interactive: contentHeight > height
        clip: interactive

        Column {
            id: column

            width: parent.width
            LayoutMirroring.enabled: Theme.mirrored
            LayoutMirroring.childrenInherit: true
            Accessible.role: Accessible.PopupMenu
        }
    }
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.quick
        }
    }
}
