#include "ui/TokenRowItem.h"

#include <QStringList>

namespace MirrowvaleAuthenticator {

void TokenRowItem::componentComplete()
{
    KeyboardFocusItem::componentComplete();
    // A list appends what it makes, but a screen reader reads the rows in the order in which they are
    // stacked.
    for (QQuickItem* sibling : parentItem() != nullptr ? parentItem()->childItems() : QList<QQuickItem*>()) {
        const auto* row = qobject_cast<TokenRowItem*>(sibling);
        if (row != nullptr && row->index > index) {
            stackBefore(row);
            return;
        }
    }
}

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

} // namespace MirrowvaleAuthenticator
