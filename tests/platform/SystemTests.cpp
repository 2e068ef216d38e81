#include "platform/system/ApplicationFolders.h"
#include "platform/system/InstanceLock.h"
#include "platform/system/ProcessProtection.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryHome.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace MirrowvaleAuthenticator {

namespace fs = std::filesystem;

TEST(InstanceLock, isOneWhateverLiesInItsPlace)
{
    const std::array<std::function<void(const fs::path& folder)>, 4> obstacles{
        [](const auto& folder) { fs::create_directory(folder / "instance.lock"); },
        [](const auto& folder) { fs::create_symlink("nowhere", folder / "instance.lock"); },
        [](const auto& folder) {
            overwrite(folder / "instance.lock", "");
            fs::permissions(folder / "instance.lock", fs::perms::none);
        },
        [](const auto& folder) {
            fs::rename(folder, folder.parent_path() / "elsewhere");
            fs::create_directory_symlink("elsewhere", folder);
        }};
    for (const auto& place : obstacles) {
        const TemporaryHome home;
        EXPECT_TRUE(passed(startApart([&] {
            constexpr uid_t nobody = 65534;
            if (geteuid() == 0) { // which can open everything
                ASSERT_EQ(chown(home.root.c_str(), nobody, nobody) + setresuid(nobody, nobody, nobody), 0);
            }
            fs::create_directories(home.data());
            place(home.data());
            const InstanceLock first;
            EXPECT_FALSE(first.isTaken());
            EXPECT_EQ(fs::status(home.data()).permissions(), fs::perms::owner_all);
            EXPECT_TRUE(passed(startApart([] { EXPECT_TRUE(InstanceLock().isTaken()); })));
        }))) << &place - obstacles.data();
    }
}

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

TEST(ApplicationFolders, lieWhereTheEnvironmentSays)
{
    const TemporaryHome home;
    for (const auto* ignored : {"", "relative/path"}) {
        setenv("XDG_DATA_HOME", ignored, 1);
        setenv("XDG_STATE_HOME", ignored, 1);
        EXPECT_EQ(dataFolderPath(), home.root / "home/.local/share/mirrowvale-authenticator");
        EXPECT_EQ(stateFolderPath(), home.root / "home/.local/state/mirrowvale-authenticator");
    }
    const std::filesystem::path accountsHome = getpwuid(geteuid())->pw_dir;
    setenv("HOME", "relative/path", 1);
    EXPECT_EQ(dataFolderPath(), accountsHome / ".local/share/mirrowvale-authenticator");
    unsetenv("HOME");
    EXPECT_EQ(stateFolderPath(), accountsHome / ".local/state/mirrowvale-authenticator");
}

} // namespace MirrowvaleAuthenticator
