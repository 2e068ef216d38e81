#pragma once

namespace MirrowvaleAuthenticator {

/// Closes this process to other eyes as far as the kernel allows: no core dump, and no reading of its memory
/// by other processes of the same user (PR_SET_DUMPABLE). Signals that would end it for a full disk or a
/// closed connection are ignored; the calls that they belong to fail with a status instead.
void protectProcess();

} // namespace MirrowvaleAuthenticator
