#pragma once

#include <QAccessibleObject>
#include <QList>
#include <QQuickItem>

namespace MirrowvaleAuthenticator {

/// What every item reports to assistive technology: its place, its children, and how it gets focus. The
/// toolkit's own interface (seen in Qt 6.4.2) has no disabled state and no actions besides the press.
class ItemAccessible : public QAccessibleObject, public QAccessibleActionInterface {
public:
    explicit ItemAccessible(QQuickItem* item);

    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QRect rect() const override; ///< in screen coordinates, in device-independent pixels
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

protected:
    QQuickItem* item() const;

    /// A rectangle of the item in screen coordinates, in device-independent pixels.
    QRect onScreen(const QRectF& rectangle) const;

    /// What lies in the item and is shown, in the order in which it is stacked.
    virtual QList<QAccessibleInterface*> children() const;
};

} // namespace MirrowvaleAuthenticator
