#include "platform/SingleInstance.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryHome.h"

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

} // namespace MirrowvaleAuthenticator
