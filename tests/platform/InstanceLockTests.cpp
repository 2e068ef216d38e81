#include "platform/system/InstanceLock.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryHome.h"

#include <array>

namespace MirrowvaleAuthenticator {

namespace {

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

} // namespace

} // namespace MirrowvaleAuthenticator
