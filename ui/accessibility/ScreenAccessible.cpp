#include "ui/accessibility/ScreenAccessible.h"

namespace MirrowvaleAuthenticator {

QAccessible::State ScreenAccessible::state() const
{
    QAccessible::State state = ItemAccessible::state();
    state.invisible = state.invisible || state.disabled;
    state.focusable = false;
    return state;
}

QList<QAccessibleInterface*> ScreenAccessible::children() const
{
    return item()->isEnabled() ? ItemAccessible::children() : QList<QAccessibleInterface*>();
}

} // namespace MirrowvaleAuthenticator
