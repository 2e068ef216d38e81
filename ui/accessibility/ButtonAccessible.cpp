#include "ui/accessibility/ButtonAccessible.h"

namespace MirrowvaleAuthenticator {

QString ButtonAccessible::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Name:
        return item()->property("text").toString();
    case QAccessible::Description:
        return item()->property("subject").toString();
    default:
        return {};
    }
}

QAccessible::State ButtonAccessible::state() const
{
    QAccessible::State state = ItemAccessible::state();
    state.focusable = state.focusable && item()->property("focusable").toBool();
    state.pressed = item()->property("down").toBool();
    state.hasPopup = item()->property("opensMenu").toBool();
    const QVariant checked = item()->property("checked"); // an option's alone
    state.checkable = checked.isValid();
    state.checked = checked.toBool();
    return state;
}

QStringList ButtonAccessible::actionNames() const
{
    return item()->isEnabled() ? ItemAccessible::actionNames() << pressAction() : QStringList{};
}

void ButtonAccessible::doAction(const QString& name)
{
    if (name == pressAction() && item()->isEnabled() && item()->isVisible()) {
        QMetaObject::invokeMethod(item(), "clicked");
    } else {
        ItemAccessible::doAction(name);
    }
}

} // namespace MirrowvaleAuthenticator
