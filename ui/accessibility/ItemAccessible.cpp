#include "ui/accessibility/ItemAccessible.h"

#include <QQuickWindow>

namespace MirrowvaleAuthenticator {

namespace {

void collectChildren(const QQuickItem& item, QList<QAccessibleInterface*>& found)
{
    for (QQuickItem* child : item.childItems()) {
        if (!child->isVisible()) {
            continue;
        }
        if (auto* accessible = QAccessible::queryAccessibleInterface(child)) {
            found += accessible;
        } else {
            collectChildren(*child, found);
        }
    }
}

} // namespace

ItemAccessible::ItemAccessible(QQuickItem* item) : QAccessibleObject(item)
{
}

QQuickItem* ItemAccessible::item() const
{
    return static_cast<QQuickItem*>(object());
}

QWindow* ItemAccessible::window() const
{
    return item()->window();
}

QAccessibleInterface* ItemAccessible::parent() const
{
    for (QQuickItem* around = item()->parentItem(); around != nullptr; around = around->parentItem()) {
        if (auto* accessible = QAccessible::queryAccessibleInterface(around)) {
            return accessible;
        }
    }
    return QAccessible::queryAccessibleInterface(window());
}

QList<QAccessibleInterface*> ItemAccessible::children() const
{
    QList<QAccessibleInterface*> found;
    collectChildren(*item(), found);
    return found;
}

QAccessibleInterface* ItemAccessible::child(int index) const
{
    return children().value(index, nullptr);
}

int ItemAccessible::childCount() const
{
    return static_cast<int>(children().size());
}

int ItemAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    return static_cast<int>(children().indexOf(child));
}

QRect ItemAccessible::onScreen(const QRectF& rectangle) const
{
    if (window() == nullptr) {
        return {};
    }
    const QRect inWindow = item()->mapRectToScene(rectangle).toRect();
    return {window()->mapToGlobal(inWindow.topLeft()), inWindow.size()};
}

QRect ItemAccessible::rect() const
{
    return onScreen({0, 0, item()->width(), item()->height()});
}

QAccessible::State ItemAccessible::state() const
{
    QAccessible::State state;
    const QWindow* shown = window();
    const QRect place = rect();
    state.invisible = shown == nullptr || !shown->isVisible() || !item()->isVisible() || place.isEmpty();
    state.offscreen = shown == nullptr || !shown->geometry().intersects(place);
    state.disabled = !item()->isEnabled();
    // A row that Tab passes over can be asked for all the same, but not one that waits for another token.
    state.focusable = item()->isEnabled() && item()->isVisible();
    state.focused = item()->window() != nullptr && item()->window()->activeFocusItem() == item();
    return state;
}

void* ItemAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : QAccessibleObject::interface_cast(type);
}

QStringList ItemAccessible::actionNames() const
{
    return state().focusable ? QStringList{setFocusAction()} : QStringList{};
}

void ItemAccessible::doAction(const QString& name)
{
    if (name == setFocusAction() && state().focusable) {
        item()->forceActiveFocus(Qt::TabFocusReason); // so that the focus ring shows, as after Tab
    }
}

} // namespace MirrowvaleAuthenticator
