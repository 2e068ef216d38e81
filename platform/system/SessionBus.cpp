#include "platform/system/SessionBus.h"

#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace MirrowvaleAuthenticator {

namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr auto noBus = "disabled:";

std::uint64_t microsecondsUntil(steady_clock::time_point deadline)
{
    const auto rest = std::chrono::duration_cast<microseconds>(deadline - steady_clock::now()).count();
    return rest > 0 ? static_cast<std::uint64_t>(rest) : 0;
}

/// Whether the bus has answered "Hello" by then: a call on a connection that is not ready waits without end.
bool becomesReady(sd_bus* bus, steady_clock::time_point deadline)
{
    while (true) {
        const int processed = sd_bus_process(bus, nullptr);
        if (processed < 0) {
            return false;
        }
        if (sd_bus_is_ready(bus) > 0) {
            return true;
        }
        const auto rest = microsecondsUntil(deadline);
        if (rest == 0 || (processed == 0 && sd_bus_wait(bus, rest) < 0)) {
            return false;
        }
    }
}

/// What the bus itself answers; nothing where it fails.
template <typename... Arguments>
BusMessage askBus(sd_bus* bus, const char* method, const char* types, Arguments... arguments)
{
    constexpr auto name = "org.freedesktop.DBus";
    sd_bus_message* answer = nullptr;
    sd_bus_call_method(bus, name, "/org/freedesktop/DBus", name, method, nullptr, &answer, types,
                       arguments...);
    return BusMessage(answer);
}

/// Whether the bus says that no program has the name.
bool hasNoOwner(sd_bus* bus, const char* service)
{
    const auto answer = askBus(bus, "NameHasOwner", "s", service);
    int isOwned = 0;
    return answer && sd_bus_message_read(answer.get(), "b", &isOwned) > 0 && isOwned == 0;
}

/// Whether the bus says that it can start no program for the name.
bool cannotBeStarted(sd_bus* bus, const char* service)
{
    const auto answer = askBus(bus, "ListActivatableNames", "");
    if (!answer || sd_bus_message_enter_container(answer.get(), SD_BUS_TYPE_ARRAY, "s") < 0) {
        return false;
    }
    const char* name = nullptr;
    int found = 0;
    while ((found = sd_bus_message_read(answer.get(), "s", &name)) > 0) {
        if (name == std::string_view(service)) {
            return false;
        }
    }
    return found == 0;
}

} // namespace

bool hasSessionBus()
{
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
        address != nullptr && *address != '\0') {
        return address != std::string_view(noBus)
            && std::string_view(address).find("autolaunch:") == std::string_view::npos;
    }
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    struct stat socket { };
    return folder != nullptr && lstat((std::string(folder) + "/bus").c_str(), &socket) == 0
        && S_ISSOCK(socket.st_mode) && socket.st_uid == geteuid();
}

void CloseBus::operator()(sd_bus* bus) const
{
    sd_bus_close(bus);
    sd_bus_unref(bus);
}

void ReleaseBusMessage::operator()(sd_bus_message* message) const
{
    sd_bus_message_unref(message);
}

BusConnection connectToSessionBus(std::chrono::milliseconds timeout)
{
    const auto deadline = steady_clock::now() + timeout;
    sd_bus* opened = nullptr;
    if (sd_bus_open_user(&opened) < 0) {
        return nullptr;
    }
    BusConnection bus(opened);
    const auto limit = static_cast<std::uint64_t>(microseconds(timeout).count());
    const bool isReady =
        sd_bus_set_method_call_timeout(bus.get(), limit) >= 0 && becomesReady(bus.get(), deadline);
    return isReady ? std::move(bus) : nullptr;
}

bool mayAnswer(const char* service, std::chrono::milliseconds timeout)
{
    const auto bus = connectToSessionBus(timeout);
    return !bus || !hasNoOwner(bus.get(), service) || !cannotBeStarted(bus.get(), service);
}

void disableSessionBus()
{
    setenv("DBUS_SESSION_BUS_ADDRESS", noBus, 1);
}

} // namespace MirrowvaleAuthenticator
