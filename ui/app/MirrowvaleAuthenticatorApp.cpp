#include "ui/app/MirrowvaleAuthenticatorApp.h"

#include "ui/app/EndingSignals.h"
#include "ui/app/MakeMainWindow.h"

#include <QGuiApplication>

#include <cstdlib>

namespace MirrowvaleAuthenticator {

MirrowvaleAuthenticatorApp::MirrowvaleAuthenticatorApp(const ApplicationName& name)
    : window_(makeMainWindow(engine_, contentView_))
{
    if (window_) {
        follow(name);
    }
}

int MirrowvaleAuthenticatorApp::run()
{
    if (!window_) {
        return EXIT_FAILURE;
    }
    quitAtEndingSignals();
    const int status = QGuiApplication::exec();
    window_->hide(); // a signal leaves it open
    return status;
}

void MirrowvaleAuthenticatorApp::follow(const ApplicationName& name)
{
    QObject::connect(&name, &ApplicationName::activated, window_.get(),
                     [this](const QString& activationToken) { bringToFront(activationToken); });
    QObject::connect(window_.get(), &QWindow::visibilityChanged, [this](QWindow::Visibility visibility) {
        if (visibility == QWindow::Hidden || visibility == QWindow::Minimized) {
            store_.persistAgain(); // the user turns away, or the program ends
        }
    });
}

void MirrowvaleAuthenticatorApp::bringToFront(const QString& activationToken)
{
    if (!activationToken.isEmpty()) {
        // Where the compositor asks for it, the window system's plugin hands it over with the request below.
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    }
    window_->setWindowStates(window_->windowStates() & ~Qt::WindowMinimized);
    window_->setVisible(true); // show() would also end that it is maximised
    window_->raise();
    window_->requestActivate();
}

} // namespace MirrowvaleAuthenticator
