#include "ui/items/ScreenItem.h"

#include <QAccessible>

namespace MirrowvaleAuthenticator {

ScreenItem::ScreenItem(QQuickItem* parent) : QQuickItem(parent)
{
    setFlag(ItemIsFocusScope);
}

void ScreenItem::itemChange(ItemChange change, const ItemChangeData& data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemEnabledHasChanged && QAccessible::isActive()) {
        QAccessibleEvent event(this, data.boolValue ? QAccessible::ObjectShow : QAccessible::ObjectHide);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace MirrowvaleAuthenticator
