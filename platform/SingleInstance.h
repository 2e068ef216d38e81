#pragma once

#include "platform/FileDescriptor.h"

#include <functional>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// Makes one process of this application the only one of its user.
///
/// The lock lies beside the stored list, so that no two processes ever write it; it ends with its process,
/// however that ends.
class SingleInstance {
public:
    /// Takes the lock, or finds out that another process holds it.
    SingleInstance();
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Whether another process holds the lock. Where no lock can be taken at all (a read-only disk, say), the
    /// process counts as the first: it could write nothing anyway.
    bool isSecond() const { return second; }

    /// Second instance: asks the first to come to the front.
    /// @param activationToken  the desktop's token that allows it to (XDG_ACTIVATION_TOKEN), or empty
    /// @returns false where the first does not listen
    bool activateFirst(std::string_view activationToken) const;

    /// First instance: the descriptor that becomes readable when another start asks for it; -1 for none.
    int activationDescriptor() const { return listener.get(); }

    /// First instance: takes one request. @returns its activation token, empty where it brought none
    std::string takeActivation() const;

private:
    FileDescriptor folder;
    FileDescriptor lock;
    FileDescriptor listener;
    bool second = false;
};

} // namespace MirrowvaleAuthenticator
