#pragma once

namespace MirrowvaleAuthenticator {

/// Lets screens, rows, buttons and fields meet assistive technology through this application's own
/// interfaces. Does nothing until assistive technology asks.
void installAccessibleFactory();

} // namespace MirrowvaleAuthenticator
