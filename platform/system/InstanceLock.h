#pragma once

#include "platform/system/FileDescriptor.h"

namespace MirrowvaleAuthenticator {

/// Keeps other processes of this application off the folder of the stored list, by a lock that ends with its
/// process, however that ends.
class InstanceLock {
public:
    /// Takes the lock, or finds out that another process has it. The folder is made where there is none.
    /// Where none has it, what writes that never ended have left is removed.
    InstanceLock();

    /// Whether another process has the lock. Where it cannot be taken at all (a folder on a disk that is only
    /// readable, say), no process has.
    bool isTaken() const { return taken_; }

private:
    FileDescriptor folder_; ///< locked itself: anything may lie in the place of a file in it
    FileDescriptor file_; ///< and a file: network file systems lock only what is open for writing
    bool taken_;
};

} // namespace MirrowvaleAuthenticator
