#include "platform/system/SessionBus.h"

#include <cstdlib>
#include <gio/gio.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace MirrowvaleAuthenticator {

namespace {

constexpr auto noBus = "disabled:";

/// The outcome of an attempt to connect.
struct Attempt {
    GDBusConnection* bus = nullptr;
    bool isOver = false;
};

void take(GObject*, GAsyncResult* result, gpointer attempt)
{
    *static_cast<Attempt*>(attempt) = {g_bus_get_finish(result, nullptr), true};
}

gboolean giveUp(gpointer attempt)
{
    static_cast<Attempt*>(attempt)->isOver = true;
    return G_SOURCE_REMOVE;
}

} // namespace

bool hasSessionBus()
{
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS")) {
        return address != std::string_view(noBus)
            && std::string_view(address).find("autolaunch:") == std::string_view::npos;
    }
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    struct stat socket { };
    return folder != nullptr && lstat((std::string(folder) + "/bus").c_str(), &socket) == 0
        && S_ISSOCK(socket.st_mode) && socket.st_uid == geteuid();
}

BusConnection connectToSessionBus(std::chrono::milliseconds timeout)
{
    if (!hasSessionBus()) {
        return nullptr;
    }
    Attempt attempt;
    g_autoptr(GMainContext) context = g_main_context_new(); // its callbacks end with this function
    g_main_context_push_thread_default(context);
    g_autoptr(GSource) timer = g_timeout_source_new(static_cast<guint>(timeout.count()));
    g_source_set_callback(timer, giveUp, &attempt, nullptr);
    g_source_attach(timer, context);
    // The asynchronous form, as it can be given up: a bus that is stopped would hold the other for ever.
    g_autoptr(GCancellable) cancellable = g_cancellable_new();
    g_bus_get(G_BUS_TYPE_SESSION, cancellable, take, &attempt);
    while (!attempt.isOver) {
        g_main_context_iteration(context, TRUE);
    }
    g_cancellable_cancel(cancellable);
    g_main_context_pop_thread_default(context);
    if (attempt.bus == nullptr) {
        return nullptr;
    }
    g_dbus_connection_set_exit_on_close(attempt.bus, FALSE);
    return {attempt.bus, g_object_unref};
}

void disableSessionBus()
{
    setenv("DBUS_SESSION_BUS_ADDRESS", noBus, 1);
}

} // namespace MirrowvaleAuthenticator
