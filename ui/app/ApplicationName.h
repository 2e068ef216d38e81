#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace MirrowvaleAuthenticator {

/// This application's name on the bus of the user's session, which one process at a time can have, and its
/// interface there, by which desktops start it and bring it to the front (`org.freedesktop.Application`, of
/// freedesktop.org's Desktop Entries; it has no actions). Requests come through the event loop.
class ApplicationName : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Takes the name, or asks the process that has it to come to the front. That one may end meanwhile, and
    /// leave the name; or wait for the user's answer to its keyring, and come to the front with it.
    ///
    /// @param activationToken  the desktop's token that allows it to (XDG_ACTIVATION_TOKEN), or empty
    /// @returns                false where another process has the name; where there is no bus, none has
    bool take(const QString& activationToken);

public slots: // under the interface's own names
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData); // NOLINT(readability-identifier-naming)
    /// The application opens no files: it comes to the front.
    Q_SCRIPTABLE void Open(const QStringList& uris, // NOLINT(readability-identifier-naming)
                           const QVariantMap& platformData);

signals:
    /// The application is to come to the front, with the desktop's token that allows it to, or none.
    void activated(const QString& activationToken);
};

} // namespace MirrowvaleAuthenticator
