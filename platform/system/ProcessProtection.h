#pragma once

namespace MirrowvaleAuthenticator {

/// Allows no core dump, and no other process of the same user to read this one's memory (PR_SET_DUMPABLE), as
/// far as the kernel can. Ignores the signals for a limit on the size of files (SIGXFSZ) and for a closed
/// connection (SIGPIPE): the call that meets one fails with its `errno` instead.
void protectProcess();

} // namespace MirrowvaleAuthenticator
