#include "platform/SingleInstance.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryHome.h"

#include <csignal>
#include <poll.h>
#include <sys/stat.h>

namespace MirrowvaleAuthenticator {

TEST(SingleInstance, aSecondProcessHandsItsActivationToTheFirst)
{
    const TemporaryHome home;
    const SingleInstance first;
    ASSERT_FALSE(first.isSecond());
    ASSERT_GE(first.activationDescriptor(), 0);
    for (const auto* token : {"token-1", "", "token-2"}) {
        const auto process = startApart([&] {
            const SingleInstance other;
            EXPECT_TRUE(other.isSecond() && other.activateFirst(token));
        });
        pollfd waiting{first.activationDescriptor(), POLLIN, 0};
        ASSERT_EQ(poll(&waiting, 1, 30000), 1);
        EXPECT_EQ(first.takeActivation(), token);
        EXPECT_TRUE(passed(process));
    }
    struct stat folder { };
    ASSERT_EQ(stat(home.data().c_str(), &folder), 0);
    EXPECT_EQ(folder.st_mode & 0777, 0700U);
}

TEST(SingleInstance, theLockEndsWithItsProcessHoweverThatEnds)
{
    const TemporaryHome home;
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const auto process = startApart([&] {
        const SingleInstance first;
        EXPECT_TRUE(!first.isSecond() && write(ready[1], "x", 1) == 1);
        pause();
    });
    pollfd waiting{ready[0], POLLIN, 0};
    ASSERT_EQ(poll(&waiting, 1, 30000), 1);
    EXPECT_TRUE(SingleInstance().isSecond());
    ASSERT_EQ(kill(process, SIGKILL), 0);
    EXPECT_FALSE(passed(process));
    {
        const SingleInstance next;
        EXPECT_FALSE(next.isSecond());
        EXPECT_GE(next.activationDescriptor(), 0) << "what the killed process left behind is in the way";
    }
    EXPECT_TRUE(passed(startApart([] { EXPECT_FALSE(SingleInstance().isSecond()); })));
    close(ready[0]);
    close(ready[1]);
}

} // namespace MirrowvaleAuthenticator
