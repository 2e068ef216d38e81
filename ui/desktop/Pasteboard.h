#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace MirrowvaleAuthenticator {

/// The system's general pasteboard.
class Pasteboard : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Replaces what the clipboard holds by plain text, with the hint by which clipboard histories leave it
    /// out.
    Q_INVOKABLE static void setString(const QString& text);

    /// Empties the window system's selection where this application filled it: a middle click pastes from it.
    static void withdrawSelection();
};

} // namespace MirrowvaleAuthenticator
