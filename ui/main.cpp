#include "platform/FreshMemory.h"
#include "platform/ProcessProtection.h"
#include "platform/RenderDevice.h"
#include "platform/SingleInstance.h"
#include "ui/MirrowvaleAuthenticatorApp.h"

#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QtQml/qqmlextensionplugin.h>

#include <cstddef>
#include <cstdlib>
#include <string>

Q_IMPORT_QML_PLUGIN(MirrowvaleAuthenticatorPlugin)

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

} // namespace

int main(int argc, char* argv[])
{
    protectProcess();
    const SingleInstance instance;
    if (instance.isSecond()) {
        return instance.activateFirst(activationToken()) ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    prepareHeap(std::size_t{6} << 20); // every start takes that much
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !hasRenderDevice()) {
        drawInSoftware();
    }
    MirrowvaleAuthenticatorApp app(argc, argv, instance);
    return app.run();
}
