#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace MirrowvaleAuthenticator {

/// An item that knows whether it has focus and shows it, having got it by a key. When another window, a menu
/// or a sheet has taken focus and gives it back, the item shows it as before.
class KeyboardFocusItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool visualFocus READ hasVisualFocus WRITE setVisualFocus NOTIFY visualFocusChanged FINAL)

public:
    explicit KeyboardFocusItem(QQuickItem* parent = nullptr);

    bool hasVisualFocus() const { return hasVisualFocus_; }
    void setVisualFocus(bool shows);

signals:
    void visualFocusChanged();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool hasVisualFocus_ = false;
    bool keepsVisualFocus_ = false; ///< had it when its scope lost focus, in which it still has focus
};

} // namespace MirrowvaleAuthenticator
