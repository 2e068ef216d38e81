#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace MirrowvaleAuthenticator {

/// A screen of the window, which remembers what in it has focus. While it is disabled, under another one,
/// assistive technology finds nothing in it, and gets an event.
class ScreenItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ScreenItem(QQuickItem* parent = nullptr);

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
};

} // namespace MirrowvaleAuthenticator
