#include "ui/items/KeyboardFocusItem.h"

#include <QFocusEvent>

#include <utility>

namespace MirrowvaleAuthenticator {

KeyboardFocusItem::KeyboardFocusItem(QQuickItem* parent) : QQuickItem(parent)
{
    // Another item of the scope has focus from now on, though the scope itself may not.
    connect(this, &QQuickItem::focusChanged, this,
            [this] { keepsVisualFocus_ = keepsVisualFocus_ && hasFocus(); });
}

void KeyboardFocusItem::setVisualFocus(bool shows)
{
    if (std::exchange(hasVisualFocus_, shows) != shows) {
        emit visualFocusChanged();
    }
}

void KeyboardFocusItem::focusInEvent(QFocusEvent* event)
{
    const Qt::FocusReason reason = event->reason();
    const bool isByKey =
        reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
    const bool isBack = std::exchange(keepsVisualFocus_, false) && reason != Qt::MouseFocusReason;
    setVisualFocus(isByKey || isBack);
    QQuickItem::focusInEvent(event);
}

void KeyboardFocusItem::focusOutEvent(QFocusEvent* event)
{
    keepsVisualFocus_ = hasVisualFocus_ && hasFocus();
    setVisualFocus(false);
    QQuickItem::focusOutEvent(event);
}

} // namespace MirrowvaleAuthenticator
