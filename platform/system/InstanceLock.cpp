#include "platform/system/InstanceLock.h"

#include "platform/system/ApplicationFolders.h"
#include "platform/system/PrivateFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>

namespace MirrowvaleAuthenticator {

namespace {

/// The folder of the stored list, made where there is none.
FileDescriptor openFolder()
{
    try {
        PrivateFolder::openOrCreate(dataFolderPath());
    } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): it may still be lockable
    }
    FileDescriptor folder(open(dataFolderPath().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat status { };
    // Another user's is not locked: that user could lock this one out.
    const bool isOwn = folder && fstat(folder.get(), &status) == 0 && status.st_uid == geteuid();
    return isOwn ? std::move(folder) : FileDescriptor();
}

/// @param place  or none, which nobody can lock
bool isLockedByOther(const FileDescriptor& place)
{
    return flock(place.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

} // namespace

InstanceLock::InstanceLock()
    : folder_(openFolder()),
      file_(openat(folder_.get(), "instance.lock", O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                   0600)),
      taken_(isLockedByOther(folder_) || isLockedByOther(file_))
{
    if (taken_) {
        return;
    }
    // As far as locks tell, nobody else is writing.
    for (const auto& path : {dataFolderPath(), stateFolderPath()}) {
        try {
            if (const auto folder = PrivateFolder::open(path)) {
                folder->removeUnfinished();
            }
        } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): it costs some room, no more
        }
    }
}

} // namespace MirrowvaleAuthenticator
