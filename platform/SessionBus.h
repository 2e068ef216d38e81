#pragma once

namespace MirrowvaleAuthenticator {

/// Whether the user's session has a D-Bus session bus to connect to. Libraries that are asked to connect
/// where there is none start a bus of their own, which nobody else would ever look at.
bool hasSessionBus();

} // namespace MirrowvaleAuthenticator
