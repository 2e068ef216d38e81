#include "ui/accessibility/ButtonAccessible.h"

#include "ui/items/ButtonItem.h"

namespace MirrowvaleAuthenticator {

ButtonAccessible::ButtonAccessible(ButtonItem* button) : ItemAccessible(button)
{
}

ButtonItem* ButtonAccessible::button() const
{
    return static_cast<ButtonItem*>(object());
}

QAccessible::Role ButtonAccessible::role() const
{
    return button()->isInMenu() ? QAccessible::MenuItem : QAccessible::Button;
}

QString ButtonAccessible::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Name:
        return button()->text();
    case QAccessible::Description:
        return button()->subject();
    case QAccessible::Accelerator:
        return button()->key();
    default:
        return {};
    }
}

QAccessible::State ButtonAccessible::state() const
{
    QAccessible::State state = ItemAccessible::state();
    state.focusable = state.focusable && button()->isFocusable();
    state.pressed = button()->isDown();
    state.hasPopup = button()->doesOpenMenu();
    state.checkable = button()->isCheckable();
    state.checked = button()->isChecked();
    return state;
}

QStringList ButtonAccessible::actionNames() const
{
    return button()->isEnabled() ? ItemAccessible::actionNames() << pressAction() : QStringList{};
}

void ButtonAccessible::doAction(const QString& name)
{
    if (name == pressAction() && button()->isEnabled() && button()->isVisible()) {
        emit button()->clicked();
    } else {
        ItemAccessible::doAction(name);
    }
}

QStringList ButtonAccessible::keyBindingsForAction(const QString& name) const
{
    return name == pressAction() && !button()->key().isEmpty() ? QStringList{button()->key()} : QStringList{};
}

} // namespace MirrowvaleAuthenticator
