#pragma once

#include "ui/accessibility/ItemAccessible.h"

namespace MirrowvaleAuthenticator {

class TokenRowItem;

/// The accessible interface of a row of the list: one thing with its actions. What it says is worked out
/// when it is asked for; no tick announces it, but for a new code.
class TokenRowAccessible : public ItemAccessible {
public:
    explicit TokenRowAccessible(TokenRowItem* row);

    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QString text(QAccessible::Text kind) const override;
    QStringList actionNames() const override; ///< in the interface's language
    void doAction(const QString& name) override;

private:
    TokenRowItem* row() const;
};

} // namespace MirrowvaleAuthenticator
