#include "tests/durability/SystemCallTap.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/types.h>

namespace MirrowvaleAuthenticator {

namespace {

using Kind = SystemCall::Kind;

std::string pathOf(int descriptor)
{
    std::error_code ignored;
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor), ignored).string();
}

/// The absolute path that a call means by a folder's descriptor and a name.
std::string pathOf(int folder, const std::filesystem::path& name)
{
    return folder == AT_FDCWD ? std::filesystem::weakly_canonical(name.parent_path()) / name.filename()
                              : pathOf(folder) / name;
}

/// Makes one call, `real`, which `describe` tells of beforehand. Flushes are recorded and not carried out:
/// the kernel outlives these tests, and flushing is what takes time.
template <typename Describe, typename Real>
auto tapped(Describe describe, Real real) -> decltype(real())
{
    auto* tap = SystemCallTap::current;
    if (tap == nullptr) {
        return real();
    }
    const auto number = tap->callCount++;
    if (const int error = tap->fault ? tap->fault(number) : 0; error != 0) {
        errno = error;
        return -1;
    }
    SystemCall call = describe();
    const auto result = call.kind == Kind::flush ? 0 : real();
    if (result >= 0 && call.kind != Kind::other) {
        tap->recorded.push_back(std::move(call));
    }
    return result;
}

std::size_t allowedTransfer(std::size_t size)
{
    return SystemCallTap::current == nullptr ? size : std::min(size, SystemCallTap::current->largestTransfer);
}

} // namespace

} // namespace MirrowvaleAuthenticator

using namespace MirrowvaleAuthenticator;

// What the C library names these calls where sizes, and times, take 64 bits.
#define OPENAT openat64
#if __SIZEOF_POINTER__ == 4 && defined(_TIME_BITS) && _TIME_BITS == 64
#define FSTAT __fstat64_time64
#else
#define FSTAT fstat64
#endif

// The linker sends the program's calls to __wrap_NAME, and calls of __real_NAME to the C library.
#define TAP(Result, name, ...) TAP_NAMED(Result, name, __VA_ARGS__)
#define TAP_NAMED(Result, name, parameters, arguments, ...)                                                  \
    Result __real_##name parameters;                                                                         \
    Result __wrap_##name parameters                                                                          \
    {                                                                                                        \
        return tapped([&] { return SystemCall __VA_ARGS__; }, [&] { return __real_##name arguments; });      \
    }

extern "C" {

TAP(int, fchmod, (int file, mode_t mode), (file, mode), {})
TAP(int, FSTAT, (int file, struct stat* status), (file, status), {})
TAP(int, fsync, (int file), (file), {Kind::flush, pathOf(file)})
TAP(ssize_t, getrandom, (void* bytes, std::size_t size, unsigned flags), (bytes, size, flags), {})
TAP(int, mkdir, (const char* path, mode_t mode), (path, mode), {Kind::makeFolder, pathOf(AT_FDCWD, path)})
// The mode of a call without one is whatever the register holds, and the kernel does not look at it.
TAP(int, OPENAT, (int folder, const char* name, int flags, mode_t mode), (folder, name, flags, mode),
    {(flags & O_CREAT) != 0 ? Kind::create : Kind::other, pathOf(folder, name)})
TAP(ssize_t, read, (int file, void* bytes, std::size_t size), (file, bytes, allowedTransfer(size)), {})
TAP(int, renameat, (int folder, const char* from, int toFolder, const char* to), (folder, from, toFolder, to),
    {Kind::rename, pathOf(folder, from), pathOf(toFolder, to)})
TAP(int, unlinkat, (int folder, const char* name, int flags), (folder, name, flags),
    {Kind::remove, pathOf(folder, name)})

ssize_t __real_write(int file, const void* bytes, std::size_t size);
ssize_t __wrap_write(int file, const void* bytes, std::size_t size)
{
    const auto allowed = allowedTransfer(size);
    return tapped(
        [&] {
            return SystemCall{Kind::write, pathOf(file), {static_cast<const char*>(bytes), allowed}};
        },
        [&] { return __real_write(file, bytes, allowed); });
}
}
