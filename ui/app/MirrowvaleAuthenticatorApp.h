#pragma once

#include "storage/TokenStore.h"
#include "ui/app/ApplicationName.h"
#include "ui/screens/ContentView.h"

#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

namespace MirrowvaleAuthenticator {

/// The application: the one token store, and the one window on it.
class MirrowvaleAuthenticatorApp {
public:
    /// @param name  by which other starts and the desktop ask for the window
    explicit MirrowvaleAuthenticatorApp(const ApplicationName& name);

    /// Shows the window and runs until it is closed, or a signal ends the program. @returns the exit status
    int run();

private:
    void follow(const ApplicationName& name);
    void bringToFront(const QString& activationToken);

    TokenStore store_;
    ContentView contentView_{store_};
    QQmlEngine engine_;
    std::unique_ptr<QQuickWindow> window_; ///< nothing where it could not be built
};

} // namespace MirrowvaleAuthenticator
