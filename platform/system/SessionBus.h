#pragma once

#include <chrono>
#include <memory>

using GDBusConnection = struct _GDBusConnection; // NOLINT(bugprone-*,cert-*): of <gio/gio.h>

namespace MirrowvaleAuthenticator {

/// Whether the session says where its bus is. Libraries that are asked to connect where it does not start a
/// bus of their own, which nobody else would ever look at.
bool hasSessionBus();

/// The last owner closes it.
using BusConnection = std::shared_ptr<GDBusConnection>;

/// The connection to the bus of the user's session that all users of GIO in this process share, as long as
/// one of them has it. A bus is never started for it. Starts threads of the library.
///
/// @returns nothing where there is no bus, or one that does not answer within `timeout`
BusConnection connectToSessionBus(std::chrono::milliseconds timeout);

/// Keeps this process's libraries from asking the session's bus: they would start one where there is none,
/// and wait long for one that does not answer.
void disableSessionBus();

} // namespace MirrowvaleAuthenticator
