#pragma once

#include "platform/system/SessionBus.h"

#include <chrono>
#include <optional>
#include <string>

namespace MirrowvaleAuthenticator {

/// This application's name on the bus of the user's session, which one process at a time can have, and its
/// interface there, by which desktops start it and bring it to the front (`org.freedesktop.Application`, of
/// freedesktop.org's Desktop Entries).
class ApplicationName {
public:
    /// Asks the bus for the name.
    ApplicationName();
    ApplicationName(const ApplicationName&) = delete;
    ApplicationName& operator=(const ApplicationName&) = delete;

    bool isConnected() const { return bus_ != nullptr; } ///< whether there is a bus that answers
    bool isOwn() const { return isOwn_; }
    bool isTaken() const { return isTaken_; } ///< by another process

    /// Asks the process that has the name to come to the front.
    /// @param activationToken  the desktop's token that allows it to, or empty
    /// @returns                false where it does not answer within `timeout`
    bool activateOwner(const std::string& activationToken, std::chrono::milliseconds timeout) const;

    /// Becomes readable when there is something to take; -1 for none.
    int descriptor() const;

    /// Answers what waits at the descriptor, without waiting for more.
    /// @returns the token of the last request to come to the front, empty where it brought none; nothing
    /// where
    ///          there was no request
    std::optional<std::string> takeActivation();

    /// Called by the interface.
    void noteActivation(std::string token) { requested_ = std::move(token); }

private:
    BusConnection bus_;
    bool isOwn_ = false;
    bool isTaken_ = false;
    std::optional<std::string> requested_;
};

} // namespace MirrowvaleAuthenticator
