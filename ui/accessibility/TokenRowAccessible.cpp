#include "ui/accessibility/TokenRowAccessible.h"

#include "ui/items/TokenRowItem.h"

#include <QCoreApplication>

namespace MirrowvaleAuthenticator {

namespace {

// The same keys as the buttons' titles in the row's drawing.
QString copyTitle()
{
    return QCoreApplication::translate("TokenRow", "Copy code");
}

QString nextTitle()
{
    return QCoreApplication::translate("TokenRow", "Next");
}

QString deleteTitle()
{
    return QCoreApplication::translate("DeleteButton", "Delete");
}

} // namespace

TokenRowAccessible::TokenRowAccessible(TokenRowItem* row) : ItemAccessible(row)
{
}

TokenRowItem* TokenRowAccessible::row() const
{
    return static_cast<TokenRowItem*>(object());
}

QString TokenRowAccessible::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? row()->spokenText() : QString();
}

QStringList TokenRowAccessible::actionNames() const
{
    if (!state().focusable) {
        return {};
    }
    QStringList names{copyTitle()};
    if (row()->doesOfferNext()) {
        names += nextTitle();
    }
    return names << deleteTitle() << ItemAccessible::actionNames();
}

void TokenRowAccessible::doAction(const QString& name)
{
    if (!state().focusable) {
        return;
    }
    if (name == copyTitle()) {
        emit row()->copyRequested();
    } else if (name == nextTitle() && row()->doesOfferNext()) {
        emit row()->nextRequested();
    } else if (name == deleteTitle()) {
        emit row()->deleteRequested();
    } else {
        ItemAccessible::doAction(name);
    }
}

} // namespace MirrowvaleAuthenticator
