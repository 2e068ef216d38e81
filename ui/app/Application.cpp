#include "ui/app/Application.h"

#include "ui/accessibility/AccessibleFactory.h"
#include "ui/app/Language.h"

#include <QFont>
#include <QLocale>

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

} // namespace

Application::Application(int& argc, char** argv) : QGuiApplication(argc, argv)
{
    setApplicationName(QStringLiteral("mirrowvale-authenticator"));
    setOrganizationDomain(QStringLiteral("mirrowvale.app"));
    setDesktopFileName(QStringLiteral("app.mirrowvale.authenticator"));
    setFont(defaultFont());
    useTranslation(*this, bestTranslation(QLocale::system().uiLanguages()));
    installAccessibleFactory();
}

} // namespace MirrowvaleAuthenticator
