#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <sys/wait.h>
#include <unistd.h>

namespace MirrowvaleAuthenticator {

/// Starts checks in a process of its own, which they may protect, limit or hold up.
inline pid_t startApart(const std::function<void()>& checks)
{
    std::cout.flush();
    const auto child = fork();
    if (child == 0) {
        checks();
        std::cout.flush();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    return child;
}

/// Waits for a process to end; false where a check in it failed, or it was killed.
inline bool passed(pid_t child)
{
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}

} // namespace MirrowvaleAuthenticator
