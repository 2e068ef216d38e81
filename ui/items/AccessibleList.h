#pragma once

#include <QObject>
#include <QtQml/qqml.h>

namespace MirrowvaleAuthenticator {

/// What assistive technology gets of a list view, attached to the view: the toolkit's has no public type.
class AccessibleList : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("attached to a list view")
    QML_ATTACHED(MirrowvaleAuthenticator::AccessibleList) // qualified for the QML type system

public:
    using QObject::QObject;

    static AccessibleList* qmlAttachedProperties(QObject* view) { return new AccessibleList(view); }

signals:
    /// @param views  how far down, in heights of the view; negative upwards
    void scrollRequested(int views);
};

} // namespace MirrowvaleAuthenticator
