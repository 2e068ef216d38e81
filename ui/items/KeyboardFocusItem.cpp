#include "ui/items/KeyboardFocusItem.h"

#include <QFocusEvent>

#include <utility>

namespace MirrowvaleAuthenticator {

void KeyboardFocusItem::setVisualFocus(bool shows)
{
    if (std::exchange(hasVisualFocus_, shows) != shows) {
        emit visualFocusChanged();
    }
}

void KeyboardFocusItem::tellChanged(QAccessible::Event what)
{
    if (isComponentComplete() && QAccessible::isActive()) {
        QAccessibleEvent event(this, what);
        QAccessible::updateAccessibility(&event);
    }
}

void KeyboardFocusItem::focusInEvent(QFocusEvent* event)
{
    const Qt::FocusReason reason = event->reason();
    setVisualFocus(reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
                   || reason == Qt::ShortcutFocusReason);
    QQuickItem::focusInEvent(event);
}

void KeyboardFocusItem::focusOutEvent(QFocusEvent* event)
{
    setVisualFocus(false);
    QQuickItem::focusOutEvent(event);
}

} // namespace MirrowvaleAuthenticator
