#pragma once

#include <chrono>
#include <memory>

struct sd_bus; // of <systemd/sd-bus.h>
struct sd_bus_message;

namespace MirrowvaleAuthenticator {

/// Whether the session says where its bus is. Libraries that are asked to connect where it does not start a
/// bus of their own, which nobody else would ever look at.
bool hasSessionBus();

/// Closes a connection to the bus at once, whatever waits to be sent.
struct CloseBus {
    void operator()(sd_bus* bus) const;
};
using BusConnection = std::unique_ptr<sd_bus, CloseBus>;

/// Gives a message back.
struct ReleaseBusMessage {
    void operator()(sd_bus_message* message) const;
};
using BusMessage = std::unique_ptr<sd_bus_message, ReleaseBusMessage>;

/// A new connection to the bus of the user's session, which answers its calls or fails them within
/// `timeout`. A bus is never started for it.
///
/// @returns nothing where there is no bus, or one that does not answer within `timeout`
BusConnection connectToSessionBus(std::chrono::milliseconds timeout);

/// Whether a service may answer on the session's bus: a program has its name, or can be started for it. Where
/// the bus does not say so within `timeout`, it may.
bool mayAnswer(const char* service, std::chrono::milliseconds timeout);

/// Keeps this process's libraries from asking the session's bus: they would start one where there is none,
/// and wait long for one that does not answer.
void disableSessionBus();

} // namespace MirrowvaleAuthenticator
