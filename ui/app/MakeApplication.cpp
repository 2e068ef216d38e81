#include "ui/app/MakeApplication.h"

#include "ui/accessibility/AccessibleFactory.h"
#include "ui/app/Language.h"

#include <QFont>
#include <QIcon>
#include <QLocale>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <cstdlib>
#include <iostream>

namespace MirrowvaleAuthenticator {

namespace {

QtMessageHandler usualHandler = nullptr;

/// In place of the toolkit's own end, an abort. What its window systems say before would be more than a line.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtFatalMsg) {
        std::cerr << "mirrowvale-authenticator: No window can be opened: no display, or not the platform "
                     "asked for.\n";
        std::_Exit(EXIT_FAILURE);
    }
    if (type == QtDebugMsg) { // which somebody has asked for
        usualHandler(type, context, message);
    }
}

/// The theme's caption. A text that may shrink looks at the default font, which is then one that is loaded
/// anyway.
QFont defaultFont()
{
    QFont font(QStringLiteral("Roboto"));
    font.setPixelSize(12);
    return font;
}

/// For window managers that find no desktop entry. The drawing for few pixels serves every size that they
/// need.
QIcon programIcon()
{
    QPixmap icon(48, 48);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    QSvgRenderer(QStringLiteral(":/icon.svg")).render(&painter);
    return icon;
}

} // namespace

std::unique_ptr<QGuiApplication> makeApplication(int& argc, char** argv)
{
    usualHandler = qInstallMessageHandler(endWithoutDisplay);
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    qInstallMessageHandler(usualHandler);
    QGuiApplication::setApplicationName(QStringLiteral("mirrowvale-authenticator"));
    QGuiApplication::setOrganizationDomain(QStringLiteral("mirrowvale.app"));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.mirrowvale.authenticator"));
    QGuiApplication::setWindowIcon(programIcon());
    QGuiApplication::setFont(defaultFont());
    useTranslation(*application, bestTranslation(QLocale::system().uiLanguages()));
    installAccessibleFactory();
    return application;
}

} // namespace MirrowvaleAuthenticator
