#include "ui/app/MirrowvaleAuthenticatorApp.h"

#include "ui/accessibility/AccessibleFactory.h"
#include "ui/app/Language.h"
#include "ui/app/MainWindow.h"

#include <QFont>
#include <QLocale>
#include <QSocketNotifier>

#include <string>

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

MirrowvaleAuthenticatorApp::MirrowvaleAuthenticatorApp(int& argc, char** argv, SingleInstance& instance)
    : instance_(instance), application_(argc, argv)
{
    QGuiApplication::setApplicationName(QStringLiteral("mirrowvale-authenticator"));
    QGuiApplication::setOrganizationDomain(QStringLiteral("mirrowvale.app"));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.mirrowvale.authenticator"));
    QGuiApplication::setFont(defaultFont());
    useTranslation(application_, bestTranslation(QLocale::system().uiLanguages()));
}

MirrowvaleAuthenticatorApp::~MirrowvaleAuthenticatorApp() = default;

int MirrowvaleAuthenticatorApp::run()
{
    if (!buildScene()) {
        return EXIT_FAILURE;
    }
    listenForOtherStarts();
    return QGuiApplication::exec();
}

TokenStore& MirrowvaleAuthenticatorApp::tokenStore()
{
    return store_ ? *store_ : store_.emplace();
}

bool MirrowvaleAuthenticatorApp::buildScene()
{
    contentView_.emplace(tokenStore());
    installAccessibleFactory();
    window_ = makeMainWindow(engine_, *contentView_);
    return window_ != nullptr;
}

void MirrowvaleAuthenticatorApp::listenForOtherStarts()
{
    if (instance_.activationDescriptor() < 0) {
        return;
    }
    auto* notifier =
        new QSocketNotifier(instance_.activationDescriptor(), QSocketNotifier::Read, &application_);
    QObject::connect(notifier, &QSocketNotifier::activated, &application_, [this] { answerOtherStarts(); });
    answerOtherStarts(); // what the bus started this process for
}

void MirrowvaleAuthenticatorApp::answerOtherStarts()
{
    if (const auto token = instance_.takeActivation()) {
        bringToFront(*token);
    }
}

void MirrowvaleAuthenticatorApp::bringToFront(const std::string& activationToken)
{
    if (!activationToken.empty()) {
        // Where the compositor asks for it, the window system's plugin hands it over with the request below.
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activationToken));
    }
    window_->setWindowStates(window_->windowStates() & ~Qt::WindowMinimized);
    window_->show();
    window_->raise();
    window_->requestActivate();
}

} // namespace MirrowvaleAuthenticator
