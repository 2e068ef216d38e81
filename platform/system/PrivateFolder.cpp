#include "platform/system/PrivateFolder.h"

#include "platform/system/SystemCall.h"
#include "platform/text/UUID.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace MirrowvaleAuthenticator {

namespace {

/// In bytes, far beyond any list of tokens: what a damaged file can make this process allocate.
constexpr off_t largestFile = off_t(1) << 30;

/// Begins the ending of a temporary file's name.
constexpr std::string_view unfinished = ".new";

struct stat statusOfFile(int descriptor)
{
    struct stat status { };
    if (uninterrupted([&] { return fstat(descriptor, &status); }) != 0) {
        throwErrno("fstat");
    }
    return status;
}

/// Refuses what belongs to another user, and closes what others could look into.
void requirePrivate(int descriptor, mode_t type, mode_t mode)
{
    const auto status = statusOfFile(descriptor);
    if ((status.st_mode & S_IFMT) != type) {
        throw std::system_error(std::make_error_code(std::errc::invalid_argument));
    }
    if (status.st_uid != geteuid()) {
        throw std::system_error(std::make_error_code(std::errc::operation_not_permitted));
    }
    // On a disk that cannot be written to, its owner may still read it, although others may, too.
    if ((status.st_mode & 07777) != mode && uninterrupted([&] { return fchmod(descriptor, mode); }) != 0
        && errno != EROFS) {
        throwErrno("fchmod");
    }
}

int flushed(int descriptor)
{
    return uninterrupted([&] { return fsync(descriptor); });
}

/// Whether nothing of a folder is left to flush: also where its file system cannot flush any (EINVAL).
bool isFolderFlushed(int folder)
{
    return flushed(folder) == 0 || errno == EINVAL;
}

void flushDescriptor(int descriptor)
{
    if (flushed(descriptor) != 0) {
        throwErrno("fsync");
    }
}

FileDescriptor opened(int folder, const char* name, int flags, mode_t mode = 0)
{
    return FileDescriptor(uninterrupted([&] { return openat(folder, name, flags | O_CLOEXEC, mode); }));
}

/// The descriptor, or none where there is no such file.
FileDescriptor openExisting(int folder, const char* name, int flags)
{
    auto descriptor = opened(folder, name, flags | O_RDONLY | O_NONBLOCK);
    if (!descriptor && errno != ENOENT) {
        throwErrno("openat");
    }
    return descriptor;
}

/// Whether a part of a path is a link whose target is not there: a disk that is not mounted, say.
bool hasLinkToNowhere(std::filesystem::path path)
{
    const auto leadsNowhere = [&] {
        return std::filesystem::is_symlink(std::filesystem::symlink_status(path))
            && !std::filesystem::exists(path);
    };
    while (path.has_relative_path() && !leadsNowhere()) {
        path = path.parent_path();
    }
    return path.has_relative_path();
}

bool makeFolder(const std::filesystem::path& path)
{
    return uninterrupted([&] { return mkdir(path.c_str(), 0700); }) == 0 || errno == EEXIST;
}

void createFolders(const std::filesystem::path& path)
{
    if (makeFolder(path)) {
        return;
    }
    if (errno != ENOENT || !path.has_relative_path()) {
        throwErrno("mkdir");
    }
    createFolders(path.parent_path());
    // Once: below a link that leads nowhere it would fail for ever.
    if (!makeFolder(path)) {
        throwErrno("mkdir");
    }
}

/// Flushes the name of a folder and of its parents, as far up as they may be of this user's making.
void flushNames(const std::filesystem::path& path)
{
    auto parent = path;
    for (bool isOwn = true; isOwn;) {
        parent = parent.parent_path();
        const auto folder = opened(AT_FDCWD, parent.c_str(), O_RDONLY | O_DIRECTORY);
        if (!folder && errno == EACCES) {
            return; // closed to this user: it cannot be flushed, and need not be of this user's making
        }
        if (!folder) {
            throwErrno("openat");
        }
        // A file system that cannot be written to may refuse, and then has nothing to flush.
        if (!isFolderFlushed(folder.get()) && errno != EROFS) {
            throwErrno("fsync");
        }
        isOwn = statusOfFile(folder.get()).st_uid == geteuid() && parent.has_relative_path();
    }
}

void removeFrom(int folder, const std::string& name)
{
    if (uninterrupted([&] { return unlinkat(folder, name.c_str(), 0); }) != 0 && errno != ENOENT) {
        throwErrno("unlinkat");
    }
}

void writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto count = uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (count < 0) {
            throwErrno("write");
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

SecretString readAll(int descriptor)
{
    const auto status = statusOfFile(descriptor);
    if (status.st_size > largestFile) {
        throw std::system_error(std::make_error_code(std::errc::not_enough_memory));
    }
    SecretString bytes;
    bytes.resize(static_cast<std::size_t>(status.st_size));
    std::size_t position = 0;
    while (position < bytes.size()) {
        const auto count = uninterrupted(
            [&] { return ::read(descriptor, bytes.data() + position, bytes.size() - position); });
        if (count < 0) {
            throwErrno("read");
        }
        if (count == 0) {
            break; // cut short since its size was asked for
        }
        position += static_cast<std::size_t>(count);
    }
    bytes.resize(position);
    return bytes;
}

} // namespace

std::optional<PrivateFolder> PrivateFolder::open(const std::filesystem::path& path)
{
    auto descriptor = openExisting(AT_FDCWD, path.c_str(), O_DIRECTORY);
    if (!descriptor) {
        if (hasLinkToNowhere(path)) {
            throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory)); // yet
        }
        return std::nullopt;
    }
    requirePrivate(descriptor.get(), S_IFDIR, 0700);
    return PrivateFolder(std::move(descriptor));
}

PrivateFolder PrivateFolder::openOrCreate(const std::filesystem::path& path)
{
    if (auto folder = open(path)) {
        return std::move(*folder);
    }
    return create(path);
}

PrivateFolder PrivateFolder::create(const std::filesystem::path& path)
{
    createFolders(path);
    flushNames(path);
    auto folder = open(path);
    if (!folder) {
        throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory));
    }
    return std::move(*folder);
}

std::optional<SecretString> PrivateFolder::read(const std::string& name) const
{
    const auto file = openExisting(folder_.get(), name.c_str(), O_NOFOLLOW);
    if (!file) {
        return std::nullopt;
    }
    requirePrivate(file.get(), S_IFREG, 0600);
    return readAll(file.get());
}

void PrivateFolder::write(const std::string& name, std::string_view bytes) const
{
    const auto temporary =
        name + std::string(unfinished) + "-" + UUID::random().string(); // no other writer's
    try {
        const auto file =
            opened(folder_.get(), temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
        if (!file) {
            throwErrno("openat");
        }
        requirePrivate(file.get(), S_IFREG, 0600); // whatever the umask
        writeAll(file.get(), bytes);
        flushDescriptor(file.get());
        const auto rename = [&] {
            return renameat(folder_.get(), temporary.c_str(), folder_.get(), name.c_str());
        };
        if (uninterrupted(rename) != 0) {
            throwErrno("renameat");
        }
    } catch (...) {
        unlinkat(folder_.get(), temporary.c_str(), 0);
        throw;
    }
    flush();
}

void PrivateFolder::removeUnfinished() const
{
    std::error_code error;
    const auto path = "/proc/self/fd/" + std::to_string(folder_.get());
    for (const auto& entry : std::filesystem::directory_iterator(path, error)) {
        const auto name = entry.path().filename();
        if (name.extension().string().starts_with(unfinished)) {
            removeFrom(folder_.get(), name);
        }
    }
}

void PrivateFolder::remove(const std::string& name) const
{
    removeFrom(folder_.get(), name);
    flush();
}

void PrivateFolder::flush() const
{
    if (!isFolderFlushed(folder_.get())) {
        throwErrno("fsync");
    }
}

void PrivateFolder::setAside(const std::string& name) const
{
    const auto bytes = read(name);
    if (!bytes) {
        return;
    }
    for (int number = 1;; ++number) {
        const auto copyName = name + ".unreadable-" + std::to_string(number);
        const auto copy = read(copyName);
        if (!copy) {
            write(copyName, *bytes);
            return;
        }
        if (*copy == *bytes) {
            flush(); // the process that made it may have ended before it did
            return;
        }
    }
}

} // namespace MirrowvaleAuthenticator
