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

    /// Replaces what the clipboard holds by plain text, marked so that clipboard histories leave it out.
    Q_INVOKABLE static void setString(const QString& text);

    /// Takes back what this application selected, where the window system hands selected text to whatever a
    /// middle click pastes it into.
    static void withdrawSelection();
};

} // namespace MirrowvaleAuthenticator
