#include "platform/ProcessProtection.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace MirrowvaleAuthenticator {
namespace {

/// Runs a check in a process of its own, which the protection may not outlive.
bool holdsOnceProtected(bool (*check)())
{
    const pid_t child = fork();
    if (child == 0) {
        protectProcess();
        _exit(check() ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0;
}

TEST(ProcessProtection, leavesNoCoreDumpAndNoReadableMemory)
{
    EXPECT_TRUE(holdsOnceProtected([] {
        rlimit core{1, 1};
        return getrlimit(RLIMIT_CORE, &core) == 0 && core.rlim_cur == 0 && core.rlim_max == 0
            && prctl(PR_GET_DUMPABLE, 0, 0, 0, 0) == 0;
    }));
}

TEST(ProcessProtection, aFileSizeLimitIsAFailedWrite)
{
    EXPECT_TRUE(holdsOnceProtected([] {
        const rlimit none{0, 0};
        const int file = open("/tmp", O_TMPFILE | O_WRONLY, 0600);
        return setrlimit(RLIMIT_FSIZE, &none) == 0 && write(file, "x", 1) == -1 && errno == EFBIG;
    }));
}

} // namespace
} // namespace MirrowvaleAuthenticator
