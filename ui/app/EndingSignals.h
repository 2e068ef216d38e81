#pragma once

namespace MirrowvaleAuthenticator {

/// From now on SIGTERM, SIGINT and SIGHUP end the event loop in order, as when the window is closed; those
/// that were ignored at the start stay so. A second one ends the process at once: it may wait for an
/// answer that does not come.
void quitAtEndingSignals();

/// Ends this process by the signal that has come, for its parent to see; returns where none has.
void raiseEndingSignal();

} // namespace MirrowvaleAuthenticator
