#pragma once

#include "platform/system/FileDescriptor.h"

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace MirrowvaleAuthenticator {

/// One of the desktop's settings that is a number or a Boolean (0 or 1).
struct DesktopSetting {
    std::string group;
    std::string key;
    double value = 0;
};

/// Asks the desktop how it wants applications to look (the Settings interface of the XDG desktop portal).
///
/// A short-lived process of its own asks. The portal answers only a process whose entry in /proc it can
/// read, which `protectProcess` forbids for this one; and a portal that has yet to be started may take longer
/// to answer than a user should wait for the window.
class PortalQuestion {
public:
    /// Starts the process, which is a copy of this one: this one may not have threads yet, nor secrets.
    PortalQuestion();
    ~PortalQuestion();
    PortalQuestion(const PortalQuestion&) = delete;
    PortalQuestion& operator=(const PortalQuestion&) = delete;

    /// Becomes readable when the answer is there, or none will come.
    int descriptor() const { return answer_.get(); }

    /// @returns the desktop's settings, none where it has none; nothing where it has not answered within
    ///          `timeout` from the question on
    std::optional<std::vector<DesktopSetting>> takeAnswer(std::chrono::milliseconds timeout);

private:
    void end();

    std::chrono::steady_clock::time_point asked_ = std::chrono::steady_clock::now();
    FileDescriptor answer_;
    pid_t process_ = -1;
};

} // namespace MirrowvaleAuthenticator
