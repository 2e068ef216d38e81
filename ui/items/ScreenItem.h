#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace MirrowvaleAuthenticator {

/// A screen of the window. While it is disabled, under another one, assistive technology finds nothing in it,
/// and gets an event.
class ScreenItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    using QQuickItem::QQuickItem;

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
};

} // namespace MirrowvaleAuthenticator
