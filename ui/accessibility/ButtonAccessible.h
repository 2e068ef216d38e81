#pragma once

#include "ui/accessibility/ItemAccessible.h"

namespace MirrowvaleAuthenticator {

/// A button as assistive technology meets it: its title, what it acts on, whether it can be pressed.
class ButtonAccessible : public ItemAccessible {
public:
    using ItemAccessible::ItemAccessible;

    QAccessible::Role role() const override { return QAccessible::Button; }
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;
};

} // namespace MirrowvaleAuthenticator
