#pragma once

#include "ui/accessibility/ItemAccessible.h"

namespace MirrowvaleAuthenticator {

/// The accessible interface of a screen: empty while it is disabled, whatever can be seen of it.
class ScreenAccessible : public ItemAccessible {
public:
    using ItemAccessible::ItemAccessible;

    QAccessible::Role role() const override { return QAccessible::Pane; }
    QString text(QAccessible::Text) const override { return {}; }
    QAccessible::State state() const override;
    QStringList actionNames() const override { return {}; }

protected:
    QList<QAccessibleInterface*> children() const override;
};

} // namespace MirrowvaleAuthenticator
