#pragma once

#include "ui/accessibility/ItemAccessible.h"

namespace MirrowvaleAuthenticator {

/// The accessible interface of the list: its rows and its scrolling. The toolkit's own (seen in Qt 6.4) also
/// has the rows of deleted tokens, which wait for another token.
class ListAccessible : public ItemAccessible {
public:
    using ItemAccessible::ItemAccessible;

    QAccessible::Role role() const override { return QAccessible::List; }
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override { return {scrollUpAction(), scrollDownAction()}; }
    void doAction(const QString& name) override;
};

} // namespace MirrowvaleAuthenticator
