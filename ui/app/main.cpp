#include "platform/system/InstanceLock.h"
#include "platform/system/PortalQuestion.h"
#include "platform/system/ProcessProtection.h"
#include "platform/system/SessionBus.h"
#include "ui/app/ApplicationName.h"
#include "ui/app/EndingSignals.h"
#include "ui/app/MakeApplication.h"
#include "ui/app/MirrowvaleAuthenticatorApp.h"
#include "ui/desktop/SystemAppearance.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string_view>

namespace {

using namespace MirrowvaleAuthenticator;

void setDefault(const char* name, const char* value)
{
    setenv(name, value, 0);
}

/// Draws without a graphics driver, and with few wake-ups. The toolkit's own variables may ask for another
/// way.
void drawInSoftware()
{
    setDefault("QT_QUICK_BACKEND", "software");
    // A frame is drawn right after what it is drawn for, not by a timer of its own.
    setDefault("QT_QPA_UPDATE_IDLE_TIME", "0");
}

/// What the desktop gave this start so that its window may come to the front.
QString activationToken()
{
    return qEnvironmentVariable("XDG_ACTIVATION_TOKEN", qEnvironmentVariable("DESKTOP_STARTUP_ID"));
}

constexpr auto help =
    "Usage: mirrowvale-authenticator [--help | --version]\n"
    "Opens a window with a list of one-time passwords. An otpauth:// URI goes into the form\n"
    "that \"+\" opens there. The toolkit's own options, such as -platform, are taken, too.\n";
constexpr auto version = "Mirrowvale Authenticator " MIRROWVALE_VERSION "\n";

/// The text that the one argument asks for; null for any other.
const char* answerTo(int argc, char** argv)
{
    const std::string_view argument = argc == 2 ? argv[1] : "";
    return argument == "--help" ? help : argument == "--version" ? version : nullptr;
}

int fail(int status, const char* reason)
{
    std::cerr << "mirrowvale-authenticator: " << reason << '\n';
    return status;
}

int run(int& argc, char** argv)
{
    const QString token = activationToken(); // before the toolkit removes it
    drawInSoftware();
    const auto application = makeApplication(argc, argv);
    if (argc > 1) { // it may hold a secret, and is not repeated
        return fail(2, "Takes --help and --version alone; a URI goes into the form that \"+\" opens.");
    }
    ApplicationName name;
    if (!name.take(token)) {
        return EXIT_SUCCESS;
    }
    // Released before the name: whoever gets the name finds the folder free.
    const InstanceLock lock;
    if (lock.isTaken()) {
        return fail(EXIT_FAILURE, "It is already running.");
    }
    return MirrowvaleAuthenticatorApp(name).run();
}

constexpr auto busAddress = "DBUS_SESSION_BUS_ADDRESS";
/// How long the bus may take to answer: one that does not is done without.
constexpr std::chrono::seconds busTimeout{2};

} // namespace

int main(int argc, char* argv[])
{
    protectProcess();
    if (const char* answer = answerTo(argc, argv)) {
        return std::cout << answer << std::flush ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    if (qEnvironmentVariableIsEmpty(busAddress)) {
        qunsetenv(busAddress); // empty, it stands for the usual place, which not every library knows
    }
    PortalQuestion question; // first, for all the time that the desktop can get, and before any thread
    const auto bus = connectToSessionBus(busTimeout); // open already when the keyring is asked
    if (!bus) {
        disableSessionBus();
    }
    SystemAppearance::await(question);
    const int status = run(argc, argv);
    raiseEndingSignal();
    return status;
}
