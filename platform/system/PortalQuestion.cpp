#include "platform/system/PortalQuestion.h"

#include "platform/system/SessionBus.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sstream>
#include <string_view>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

/// A desktop that starts its portal for this question may well take seconds.
constexpr std::chrono::seconds processTimeout{25};

BusMessage askPortal(sd_bus* bus)
{
    sd_bus_message* reply = nullptr;
    sd_bus_call_method(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                       "org.freedesktop.portal.Settings", "ReadAll", nullptr, &reply, "as", 2,
                       "org.freedesktop.appearance", "org.gnome.desktop.interface");
    return BusMessage(reply);
}

/// A variant's value where it is a number or a truth value; any other is skipped.
std::optional<double> readNumber(sd_bus_message* message)
{
    const char* type = "";
    sd_bus_message_peek_type(message, nullptr, &type);
    double number = 0;
    std::uint32_t whole = 0;
    int flag = 0;
    switch (std::string_view(type).size() == 1 ? *type : '\0') {
    case SD_BUS_TYPE_DOUBLE:
        return sd_bus_message_read(message, "v", "d", &number) > 0 ? std::optional(number) : std::nullopt;
    case SD_BUS_TYPE_UINT32:
        return sd_bus_message_read(message, "v", "u", &whole) > 0 ? std::optional<double>(whole)
                                                                  : std::nullopt;
    case SD_BUS_TYPE_BOOLEAN:
        return sd_bus_message_read(message, "v", "b", &flag) > 0 ? std::optional<double>(flag) : std::nullopt;
    default:
        sd_bus_message_skip(message, "v");
        return std::nullopt;
    }
}

/// Writes a group's settings, one a line.
void writeGroup(sd_bus_message* message, std::ostream& lines)
{
    const char* group = "";
    const char* key = "";
    sd_bus_message_read(message, "s", &group);
    sd_bus_message_enter_container(message, 'a', "{sv}");
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        sd_bus_message_read(message, "s", &key);
        if (const auto value = readNumber(message)) {
            lines << group << ' ' << key << ' ' << *value << '\n';
        }
        sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
}

std::string linesOf(sd_bus_message* reply)
{
    std::ostringstream lines;
    if (sd_bus_message_has_signature(reply, "a{sa{sv}}") > 0) {
        sd_bus_message_enter_container(reply, 'a', "{sa{sv}}");
        while (sd_bus_message_enter_container(reply, 'e', "sa{sv}") > 0) {
            writeGroup(reply, lines);
            sd_bus_message_exit_container(reply);
        }
    }
    return lines.str();
}

/// What the process of the question does.
void askAndWrite(int pipe)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
    prctl(PR_SET_DUMPABLE, 1, 0, 0, 0);
    if (const auto bus = connectToSessionBus(processTimeout)) {
        if (const auto reply = askPortal(bus.get())) {
            const auto lines = linesOf(reply.get());
            if (write(pipe, lines.data(), lines.size()) < 0) {
                return; // nobody waits for it any more
            }
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
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
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
