#include "ui/TokenRowItem.h"

#include <QFocusEvent>
#include <QStringList>

#include <utility>

namespace MirrowvaleAuthenticator {

QString TokenRowItem::spokenText() const
{
    QString digits;
    for (const QChar digit : displayCode) {
        if (!digit.isSpace()) {
            digits += digits.isEmpty() ? QString(digit) : QLatin1Char(' ') + digit;
        }
    }
    QStringList parts{issuer, account, digits};
    if (!offersNext) {
        parts += countdown;
    }
    return parts.join(QStringLiteral(", "));
}

void TokenRowItem::setKeyboardFocus(bool shows)
{
    if (std::exchange(focusShown, shows) != shows) {
        emit keyboardFocusChanged();
    }
}

void TokenRowItem::focusInEvent(QFocusEvent* event)
{
    const Qt::FocusReason reason = event->reason();
    setKeyboardFocus(reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
                     || reason == Qt::ShortcutFocusReason);
    QQuickItem::focusInEvent(event);
}

void TokenRowItem::focusOutEvent(QFocusEvent* event)
{
    setKeyboardFocus(false);
    QQuickItem::focusOutEvent(event);
}

} // namespace MirrowvaleAuthenticator
