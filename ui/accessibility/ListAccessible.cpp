#include "ui/accessibility/ListAccessible.h"

namespace MirrowvaleAuthenticator {

QString ListAccessible::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? item()->property("title").toString() : QString();
}

QAccessible::State ListAccessible::state() const
{
    QAccessible::State state = ItemAccessible::state();
    state.focusable = false; // its rows are
    return state;
}

void ListAccessible::doAction(const QString& name)
{
    if (actionNames().contains(name)) {
        QMetaObject::invokeMethod(item(), "scroll", Q_ARG(int, name == scrollDownAction() ? 1 : -1));
    }
}

} // namespace MirrowvaleAuthenticator
