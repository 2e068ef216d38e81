#pragma once

#include "platform/system/SingleInstance.h"
#include "storage/TokenStore.h"
#include "ui/screens/ContentView.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>
#include <optional>
#include <string>

namespace MirrowvaleAuthenticator {

/// The application: the one token store, and the one window on it.
class MirrowvaleAuthenticatorApp {
public:
    MirrowvaleAuthenticatorApp(int& argc, char** argv, SingleInstance& instance);
    ~MirrowvaleAuthenticatorApp();

    /// Shows the window and runs until it is closed. @returns the exit status
    int run();

private:
    TokenStore& tokenStore();
    bool buildScene();
    void listenForOtherStarts();
    void answerOtherStarts();
    void bringToFront(const std::string& activationToken);

    SingleInstance& instance_;
    QGuiApplication application_;
    std::optional<TokenStore> store_;
    std::optional<ContentView> contentView_;
    QQmlEngine engine_;
    std::unique_ptr<QQuickWindow> window_;
};

} // namespace MirrowvaleAuthenticator
