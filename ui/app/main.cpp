#include "platform/system/PortalQuestion.h"
#include "platform/system/ProcessProtection.h"
#include "platform/system/RenderDevice.h"
#include "platform/system/SessionBus.h"
#include "platform/system/SingleInstance.h"
#include "ui/app/MirrowvaleAuthenticatorApp.h"
#include "ui/desktop/SystemAppearance.h"

#include <QQuickWindow>
#include <QSGRendererInterface>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace MirrowvaleAuthenticator;

void setDefault(const char* name, const char* value)
{
    setenv(name, value, 0);
}

/// Draws without a rendering device, and so that each tick wakes this process once.
void drawInSoftware()
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // The few digits that change are sent to the X server as they are: memory shared with it could be drawn
    // into only after asking whether it has read the last frame.
    setDefault("QT_XCB_NO_MITSHM", "1");
    // A frame is drawn right after what it is drawn for, not by a timer of its own.
    setDefault("QT_QPA_UPDATE_IDLE_TIME", "0");
}

/// What the desktop gave this start so that its window may come to the front.
std::string activationToken()
{
    for (const char* name : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        if (const char* token = std::getenv(name)) {
            return token;
        }
    }
    return {};
}

/// How long another process may take to bring its window to the front.
constexpr std::chrono::seconds activationTimeout{5};

int run(int& argc, char** argv, SingleInstance& instance)
{
    if (!instance.isOnBus()) {
        disableSessionBus();
    }
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !hasRenderDevice()) {
        drawInSoftware();
    }
    MirrowvaleAuthenticatorApp app(argc, argv, instance);
    return app.run();
}

} // namespace

int main(int argc, char* argv[])
{
    protectProcess();
    PortalQuestion question; // first, for all the time that the desktop can get
    std::unique_ptr<SingleInstance> instance;
    try {
        instance = becomeOnlyInstance(activationToken(), activationTimeout);
    } catch (const std::runtime_error& failure) {
        std::cerr << "mirrowvale-authenticator: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
    SystemAppearance::await(question);
    return instance ? run(argc, argv, *instance) : EXIT_SUCCESS;
}
