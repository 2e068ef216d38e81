#pragma once

#include "platform/crypto/SecretMemory.h"
#include "platform/system/FileDescriptor.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// A folder (0700) of whole files (0600) for this user alone. Other modes are set to these; a
/// folder or file that belongs to another user, and a symbolic link in a file's place, are refused. The
/// folder itself may be reached by a link: to another disk, say.
/// Every operation throws `std::system_error` for what the file system answers.
class PrivateFolder {
public:
    /// The folder, where it exists.
    static std::optional<PrivateFolder> open(const std::filesystem::path& path);

    /// The folder, created where it does not exist.
    static PrivateFolder openOrCreate(const std::filesystem::path& path);

    /// The folder, made with its parents where it does not exist; its name and theirs are flushed, also those
    /// that an earlier run made and did not flush.
    static PrivateFolder create(const std::filesystem::path& path);

    /// A file's bytes, or nothing where there is no such file.
    std::optional<SecretString> read(const std::string& name) const;

    /// Replaces or creates a file so that at every moment, a power cut included, the old or the new one is
    /// whole: temporary file under a name of its own, flush, rename, flush of the folder.
    void write(const std::string& name, std::string_view bytes) const;

    /// Removes the temporary files of writes that never ended. Nobody else may be writing.
    void removeUnfinished() const;

    /// Removes a file, if it exists, and flushes the folder.
    void remove(const std::string& name) const;

    /// Flushes the folder: its names, also those of an earlier run, survive a power cut.
    void flush() const;

    /// Copies a file under the first free one of "<name>.unreadable-1", "<name>.unreadable-2" and so on,
    /// unless one of them holds the same bytes already.
    void setAside(const std::string& name) const;

private:
    explicit PrivateFolder(FileDescriptor owned) : folder_(std::move(owned)) { }

    FileDescriptor folder_;
};

} // namespace MirrowvaleAuthenticator
