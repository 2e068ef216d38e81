#include "ui/items/TokenRowItem.h"

#include <QStringList>

namespace MirrowvaleAuthenticator {

TokenRowItem::TokenRowItem(QQuickItem* parent) : KeyboardFocusItem(parent)
{
    // All of its name but the countdown, which would be told each second.
    for (const auto changed :
         {&TokenRowItem::issuerChanged, &TokenRowItem::accountChanged, &TokenRowItem::displayCodeChanged}) {
        connect(this, changed, this, [this] { tellChanged(QAccessible::NameChanged); });
    }
}

void TokenRowItem::componentComplete()
{
    KeyboardFocusItem::componentComplete();
    stackInOrder();
}

void TokenRowItem::stackInOrder()
{
    const TokenRowItem* previous = nullptr;
    for (QQuickItem* sibling : parentItem() != nullptr ? parentItem()->childItems() : QList<QQuickItem*>()) {
        const auto* row = qobject_cast<TokenRowItem*>(sibling);
        if (row == nullptr || row == this || !row->isVisible()) {
            continue;
        }
        if (row->index_ > index_) {
            stackBefore(row);
            return;
        }
        previous = row;
    }
    if (previous != nullptr) {
        stackAfter(previous);
    }
}

QString TokenRowItem::spokenText() const
{
    QString digits;
    for (const QChar digit : displayCode_) {
        if (!digit.isSpace()) {
            digits += digits.isEmpty() ? QString(digit) : QLatin1Char(' ') + digit;
        }
    }
    QStringList parts{issuer_, account_, digits};
    if (!offersNext_) {
        parts += countdown_;
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace MirrowvaleAuthenticator
