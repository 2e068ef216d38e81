#include "ui/app/MirrowvaleAuthenticatorApp.h"

#include "ui/app/MainWindow.h"

#include <QSocketNotifier>

#include <cstdlib>

namespace MirrowvaleAuthenticator {

MirrowvaleAuthenticatorApp::MirrowvaleAuthenticatorApp(int& argc, char** argv, SingleInstance& instance)
    : instance_(instance), application_(argc, argv), window_(makeMainWindow(engine_, contentView_))
{
}

int MirrowvaleAuthenticatorApp::run()
{
    if (!window_) {
        return EXIT_FAILURE;
    }
    listenForOtherStarts();
    return QGuiApplication::exec();
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
    window_->setVisible(true); // show() would also end that it is maximised
    window_->raise();
    window_->requestActivate();
}

} // namespace MirrowvaleAuthenticator
