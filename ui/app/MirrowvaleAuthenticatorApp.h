#pragma once

#include "platform/system/SingleInstance.h"
#include "storage/TokenStore.h"
#include "ui/app/Application.h"
#include "ui/screens/ContentView.h"

#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>
#include <string>

namespace MirrowvaleAuthenticator {

/// The application: the one token store, and the one window on it.
class MirrowvaleAuthenticatorApp {
public:
    MirrowvaleAuthenticatorApp(int& argc, char** argv, SingleInstance& instance);

    /// Shows the window and runs until it is closed. @returns the exit status
    int run();

private:
    void listenForOtherStarts();
    void answerOtherStarts();
    void bringToFront(const std::string& activationToken);

    SingleInstance& instance_;
    Application application_;
    TokenStore store_;
    ContentView contentView_{store_};
    QQmlEngine engine_;
    std::unique_ptr<QQuickWindow> window_; ///< nothing where it could not be built
};

} // namespace MirrowvaleAuthenticator
