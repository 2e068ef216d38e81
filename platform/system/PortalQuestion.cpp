#include "platform/system/PortalQuestion.h"

#include "platform/system/SessionBus.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <gio/gio.h>
#include <memory>
#include <poll.h>
#include <sstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

/// A desktop that starts its portal for this question may well take seconds.
constexpr std::chrono::milliseconds processTimeout{25000};

GVariant* askPortal(GDBusConnection* bus)
{
    constexpr std::array groups{"org.freedesktop.appearance", "org.gnome.desktop.interface",
                                "org.gnome.desktop.a11y.interface"};
    return g_dbus_connection_call_sync(
        bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
        "org.freedesktop.portal.Settings", "ReadAll",
        g_variant_new("(@as)", g_variant_new_strv(groups.data(), groups.size())),
        G_VARIANT_TYPE("(a{sa{sv}})"), G_DBUS_CALL_FLAGS_NONE, static_cast<int>(processTimeout.count()),
        nullptr, nullptr);
}

/// A setting's value where it is a number or a truth value.
std::optional<double> numberOf(GVariant* value)
{
    switch (g_variant_classify(value)) {
    case G_VARIANT_CLASS_DOUBLE:
        return g_variant_get_double(value);
    case G_VARIANT_CLASS_UINT32:
        return g_variant_get_uint32(value);
    case G_VARIANT_CLASS_BOOLEAN:
        return g_variant_get_boolean(value);
    default:
        return std::nullopt;
    }
}

/// The settings, one a line.
std::string linesOf(GVariant* reply)
{
    std::ostringstream lines;
    g_autoptr(GVariantIter) groups = nullptr;
    g_variant_get(reply, "(a{sa{sv}})", &groups);
    const char* group = nullptr;
    GVariantIter* settings = nullptr;
    while (g_variant_iter_loop(groups, "{&sa{sv}}", &group, &settings) != FALSE) {
        const char* key = nullptr;
        GVariant* value = nullptr;
        while (g_variant_iter_loop(settings, "{&sv}", &key, &value) != FALSE) {
            if (const auto number = numberOf(value)) {
                lines << group << ' ' << key << ' ' << *number << '\n';
            }
        }
    }
    return lines.str();
}

/// Asks, and writes the answer for the process that waits.
void askAndWrite(int pipe)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
    prctl(PR_SET_DUMPABLE, 1, 0, 0, 0);
    const auto bus = connectToSessionBus(processTimeout);
    g_autoptr(GVariant) reply = bus ? askPortal(bus.get()) : nullptr;
    if (reply != nullptr) {
        const auto lines = linesOf(reply);
        if (write(pipe, lines.data(), lines.size()) < 0) {
            return; // nobody waits for it any more
        }
    }
}

std::string readToEnd(int descriptor)
{
    std::string text;
    std::array<char, 1024> piece{};
    ssize_t count = 0;
    while ((count = read(descriptor, piece.data(), piece.size())) > 0) {
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
    return text;
}

} // namespace

PortalQuestion::PortalQuestion()
{
    std::array<int, 2> ends{};
    if (!hasSessionBus() || pipe2(ends.data(), O_CLOEXEC) != 0) {
        return;
    }
    answer_ = FileDescriptor(ends[0]);
    const FileDescriptor question(ends[1]);
    process_ = fork();
    if (process_ == 0) {
        askAndWrite(question.get());
        _exit(0);
    }
}

PortalQuestion::~PortalQuestion()
{
    end();
}

void PortalQuestion::end()
{
    if (const pid_t ending = std::exchange(process_, -1); ending > 0) {
        kill(ending, SIGKILL);
        waitpid(ending, nullptr, 0);
    }
}

std::optional<std::vector<DesktopSetting>> PortalQuestion::takeAnswer(std::chrono::milliseconds timeout)
{
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(
        asked_ + timeout - std::chrono::steady_clock::now());
    pollfd waiting{answer_.get(), POLLIN, 0};
    if (answer_ && poll(&waiting, 1, std::max(0, static_cast<int>(rest.count()))) <= 0) {
        return std::nullopt;
    }
    std::istringstream lines(readToEnd(answer_.get()));
    end();
    std::vector<DesktopSetting> settings;
    DesktopSetting setting;
    while (lines >> setting.group >> setting.key >> setting.value) {
        settings.push_back(setting);
    }
    return settings;
}

} // namespace MirrowvaleAuthenticator
