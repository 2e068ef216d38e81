#include "ui/app/Application.h"

#include "ui/accessibility/AccessibleFactory.h"
#include "ui/app/Language.h"

#include <QFont>
#include <QLocale>

#include <sys/socket.h>
#include <xcb/xcb.h>

namespace MirrowvaleAuthenticator {

namespace {

/// The theme's caption. A text that may shrink looks at the default font, which is then one that is loaded
/// anyway.
QFont defaultFont()
{
    QFont font(QStringLiteral("Roboto"));
    font.setPixelSize(12);
    return font;
}

/// All codes of a full window may change at once. Drawn in software they are then more than an X connection
/// takes at its usual size, and to send them would wait for the server.
void widenConnection(const QGuiApplication& application)
{
    if (const auto* x11 = application.nativeInterface<QNativeInterface::QX11Application>()) {
        const int size = 1 << 20; // bytes; the kernel may allow fewer
        setsockopt(xcb_get_file_descriptor(x11->connection()), SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
    }
}

} // namespace

Application::Application(int& argc, char** argv) : QGuiApplication(argc, argv)
{
    widenConnection(*this);
    setApplicationName(QStringLiteral("mirrowvale-authenticator"));
    setOrganizationDomain(QStringLiteral("mirrowvale.app"));
    setDesktopFileName(QStringLiteral("app.mirrowvale.authenticator"));
    setFont(defaultFont());
    useTranslation(*this, bestTranslation(QLocale::system().uiLanguages()));
    installAccessibleFactory();
}

} // namespace MirrowvaleAuthenticator
