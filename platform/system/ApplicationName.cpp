#include "platform/system/ApplicationName.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <systemd/sd-bus.h>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

constexpr auto busName = "app.mirrowvale.authenticator";
constexpr auto objectPath = "/app/mirrowvale/authenticator";
constexpr auto interface = "org.freedesktop.Application";
/// The first is what a desktop that knows both of them means.
constexpr std::array tokenKeys{"activation-token", "desktop-startup-id"};

constexpr std::chrono::milliseconds busTimeout{2000};

/// Reads an entry's value where it is a text, and skips any other.
int readText(sd_bus_message* message, const char*& text)
{
    const char* type = nullptr;
    const int status = sd_bus_message_peek_type(message, nullptr, &type);
    if (status <= 0 || std::string_view(type) != "s") {
        return status < 0 ? status : sd_bus_message_skip(message, "v");
    }
    return sd_bus_message_read(message, "v", "s", &text);
}

/// Reads one entry of the platform's data.
int readEntry(sd_bus_message* message, std::string& token)
{
    const char* key = "";
    const char* text = nullptr;
    int status = sd_bus_message_read(message, "s", &key);
    if (status >= 0) {
        status = readText(message, text);
    }
    const bool isBetter = key == std::string_view(tokenKeys[0]);
    if (text != nullptr && (isBetter || (token.empty() && key == std::string_view(tokenKeys[1])))) {
        token = text;
    }
    return status < 0 ? status : sd_bus_message_exit_container(message);
}

/// Reads the platform's data, which ends a request.
int readToken(sd_bus_message* message, std::string& token)
{
    int status = sd_bus_message_enter_container(message, 'a', "{sv}");
    while (status >= 0) {
        status = sd_bus_message_enter_container(message, 'e', "sv");
        if (status <= 0) {
            break;
        }
        status = readEntry(message, token);
    }
    return status;
}

int answer(sd_bus_message* message, void* applicationName)
{
    std::string token;
    if (const int status = readToken(message, token); status < 0) {
        return status;
    }
    static_cast<ApplicationName*>(applicationName)->noteActivation(std::move(token));
    return sd_bus_reply_method_return(message, "");
}

int activate(sd_bus_message* message, void* applicationName, sd_bus_error*)
{
    return answer(message, applicationName);
}

/// The application opens no files: it comes to the front.
int open(sd_bus_message* message, void* applicationName, sd_bus_error*)
{
    const int status = sd_bus_message_skip(message, "as");
    return status < 0 ? status : answer(message, applicationName);
}

int activateAction(sd_bus_message*, void*, sd_bus_error* error)
{
    return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "There are no actions");
}

const std::array<sd_bus_vtable, 5> methods{
    {SD_BUS_VTABLE_START(0), SD_BUS_METHOD("Activate", "a{sv}", "", activate, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_METHOD("Open", "asa{sv}", "", open, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_METHOD("ActivateAction", "sava{sv}", "", activateAction, SD_BUS_VTABLE_UNPRIVILEGED),
     SD_BUS_VTABLE_END}};

BusMessage makeRequest(sd_bus* bus, const std::string& token)
{
    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_call(bus, &made, busName, objectPath, interface, "Activate") < 0) {
        return nullptr;
    }
    BusMessage message(made);
    bool isWhole = sd_bus_message_open_container(made, 'a', "{sv}") >= 0;
    for (const auto* key : tokenKeys) {
        isWhole =
            isWhole && (token.empty() || sd_bus_message_append(made, "{sv}", key, "s", token.c_str()) >= 0);
    }
    return isWhole && sd_bus_message_close_container(made) >= 0 ? std::move(message) : nullptr;
}

} // namespace

ApplicationName::ApplicationName() : bus_(connectToSessionBus(busTimeout))
{
    // The object first: a request may come as soon as the name is there.
    if (!bus_
        || sd_bus_add_object_vtable(bus_.get(), nullptr, objectPath, interface, methods.data(), this) < 0) {
        return;
    }
    const int status = sd_bus_request_name(bus_.get(), busName, 0);
    isOwn_ = status >= 0;
    isTaken_ = status == -EEXIST;
    if (status == -ETIMEDOUT) {
        bus_ = nullptr;
    }
}

bool ApplicationName::activateOwner(const std::string& activationToken,
                                    std::chrono::milliseconds timeout) const
{
    BusMessage request = makeRequest(bus_.get(), activationToken);
    if (!request) {
        request = makeRequest(bus_.get(), {}); // the bus takes no token that is not UTF-8
    }
    const auto rest =
        std::max<std::chrono::microseconds>(timeout, std::chrono::milliseconds(1)); // 0 is a default
    const auto limit = static_cast<std::uint64_t>(rest.count());
    return request && sd_bus_call(bus_.get(), request.get(), limit, nullptr, nullptr) >= 0;
}

int ApplicationName::descriptor() const
{
    return isOwn_ && bus_ ? sd_bus_get_fd(bus_.get()) : -1;
}

std::optional<std::string> ApplicationName::takeActivation()
{
    int status = bus_ ? 1 : 0;
    while (status > 0) {
        status = sd_bus_process(bus_.get(), nullptr);
    }
    if (status < 0) {
        bus_ = nullptr; // it has ended
    }
    return std::exchange(requested_, std::nullopt);
}

} // namespace MirrowvaleAuthenticator
