#pragma once

#include "ui/accessibility/ItemAccessible.h"

namespace MirrowvaleAuthenticator {

class ButtonItem;

/// The accessible interface of a button: its title, what it acts on, whether it can be pressed, by which
/// key.
class ButtonAccessible : public ItemAccessible {
public:
    explicit ButtonAccessible(ButtonItem* button);

    QAccessible::Role role() const override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

private:
    ButtonItem* button() const;
};

} // namespace MirrowvaleAuthenticator
