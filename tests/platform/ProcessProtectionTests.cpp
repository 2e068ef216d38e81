#include "platform/system/ProcessProtection.h"

#include "tests/support/ChildProcess.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace MirrowvaleAuthenticator {

TEST(ProcessProtection, leavesNothingToReadAndOutlivesAFileSizeLimit)
{
    EXPECT_TRUE(passed(startApart([] {
        protectProcess();
        rlimit core{1, 1};
        EXPECT_EQ(getrlimit(RLIMIT_CORE, &core), 0);
        EXPECT_EQ(core.rlim_cur + core.rlim_max, 0U);
        EXPECT_EQ(prctl(PR_GET_DUMPABLE, 0, 0, 0, 0), 0);
        const rlimit none{0, 0};
        const int file = open("/tmp", O_TMPFILE | O_WRONLY, 0600);
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
        EXPECT_EQ(write(file, "x", 1), -1);
        EXPECT_EQ(errno, EFBIG);
    })));
}

} // namespace MirrowvaleAuthenticator
