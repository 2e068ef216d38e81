#pragma once

#include "platform/credentials/Status.h"

#include <cstdint>

namespace MirrowvaleAuthenticator {

/// The status for an error that the Secret Service, the session bus or their libraries report.
/// @param domain  the error's domain as GLib numbers it
OSStatus statusForError(std::uint32_t domain, int code);

} // namespace MirrowvaleAuthenticator
