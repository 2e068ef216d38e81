#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

/// A system call that changes what is stored, or flushes it.
struct SystemCall {
    enum class Kind { other, create, makeFolder, write, flush, rename, remove };

    Kind kind = Kind::other;
    std::string path{}; ///< absolute; of a write and a flush, of what the descriptor stands for
    std::string text{}; ///< the bytes that were written, or a rename's new path
};

/// Stands between the program and the kernel while it lives: numbers the calls to the file system and the
/// random source from 0, records those that changed something, and lets chosen ones fail.
class SystemCallTap {
public:
    SystemCallTap() { current = this; }
    ~SystemCallTap() { current = nullptr; }
    SystemCallTap(const SystemCallTap&) = delete;
    SystemCallTap& operator=(const SystemCallTap&) = delete;

    static inline SystemCallTap* current = nullptr; ///< the one that stands in between
    std::function<int(std::size_t number)> fault; ///< the `errno` for a call, or 0 to let it through
    std::size_t largestTransfer = SIZE_MAX; ///< longer reads and writes are cut short, as the kernel may do
    std::vector<SystemCall> recorded{}; ///< what succeeded, in order; `other` calls are left out
    std::size_t callCount = 0; ///< those that failed included
};

} // namespace MirrowvaleAuthenticator
