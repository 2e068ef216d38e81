#pragma once

namespace MirrowvaleAuthenticator {

/// Registers the accessible interfaces of screens, rows, buttons and fields. Nothing is made until assistive
/// technology asks.
void installAccessibleFactory();

} // namespace MirrowvaleAuthenticator
