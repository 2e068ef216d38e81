#pragma once

#include "platform/system/ApplicationName.h"
#include "platform/system/FileDescriptor.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace MirrowvaleAuthenticator {

/// Makes one process of this application the only one that writes a user's list.
///
/// Where the session has a bus, the first has the application's name there: whatever their home folders are,
/// processes on one bus may share a keyring. With or without a bus, the first locks the folder of the stored
/// list, so that no two processes write the same file. Name and lock end with their process, however that
/// ends.
class SingleInstance {
public:
    /// Takes the name and the lock, or finds out that another process has one of them.
    SingleInstance();
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Whether another process has the name or the lock. Where neither can be taken at all (no bus, and a
    /// folder on a disk that is only readable, say), the process counts as the first.
    bool isSecond() const { return name_.isTaken() || lockedByOther_; }

    /// Whether the session has a bus that answers.
    bool isOnBus() const { return name_.isConnected(); }

    /// Second instance: asks the first to come to the front.
    /// @param activationToken  the desktop's token that allows it to (XDG_ACTIVATION_TOKEN), or empty
    /// @returns false where the first does not answer within `timeout`
    bool activateFirst(const std::string& activationToken, std::chrono::milliseconds timeout) const;

    /// First instance: the descriptor that becomes readable when another start may have asked for it; -1 for
    /// none. What has come already is to be taken first.
    int activationDescriptor() const { return waiting_.get(); }

    /// First instance: takes what waits at the descriptor.
    /// @returns the activation token of a request to come to the front, empty where it brought none; nothing
    ///          where there is no request
    std::optional<std::string> takeActivation();

private:
    void lockFolder();
    void waitFor(int descriptor);

    ApplicationName name_;
    FileDescriptor folder_; ///< locked itself
    FileDescriptor lock_;
    bool lockedByOther_ = false;
    FileDescriptor listener_;
    FileDescriptor waiting_; ///< on the listener and on the bus
};

/// Becomes the only instance; where another process is that already, it is asked to come to the front.
/// @param activationToken  as in `SingleInstance::activateFirst`
/// @param timeout         how long the other may take to answer or to end
/// @returns                nothing where another process is the first, and has answered
/// @throws std::runtime_error  where it does not answer
std::unique_ptr<SingleInstance> becomeOnlyInstance(const std::string& activationToken,
                                                   std::chrono::milliseconds timeout);

} // namespace MirrowvaleAuthenticator
