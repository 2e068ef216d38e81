#include "ui/items/TokenRowItem.h"

#include <QAccessible>
#include <QStringList>

namespace MirrowvaleAuthenticator {

TokenRowItem::TokenRowItem(QQuickItem* parent) : KeyboardFocusItem(parent)
{
    connect(this, &TokenRowItem::tokenChanged, this, &TokenRowItem::announce);
}

/// A screen reader may remember a name; one of which the countdown alone is new would be told each second.
void TokenRowItem::announce()
{
    if (isComponentComplete() && QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

QString TokenRowItem::spokenText() const
{
    const QStringList digits = QString(displayCode_).remove(u' ').split(QString(), Qt::SkipEmptyParts);
    QStringList parts{issuer_, account_, digits.join(u' ')};
    if (!offersNext_) {
        parts += countdown_;
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace MirrowvaleAuthenticator
