#include "platform/system/SingleInstance.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryHome.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <memory>
#include <poll.h>
#include <stdexcept>

namespace MirrowvaleAuthenticator {

namespace {

namespace fs = std::filesystem;

/// A session's bus, named in the environment.
class Bus {
public:
    Bus()
    {
        std::array<char, 256> address{};
        auto* output = popen("dbus-daemon --session --fork --print-address=1 --print-pid=1", "r");
        const int count = std::fscanf(output, "%255s %d", address.data(), &process);
        pclose(output);
        if (count != 2) {
            throw std::runtime_error("no bus");
        }
        setenv("DBUS_SESSION_BUS_ADDRESS", address.data(), 1);
    }
    ~Bus() { kill(process, SIGTERM); }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

private:
    pid_t process = 0;
};

/// In a session with a bus, where a second start has another home folder; and in one without, where it has
/// not.
class SingleInstanceTest : public testing::TestWithParam<bool> {
protected:
    /// A second start, which has that long to find out.
    pid_t startSecond(const std::function<void()>& checks) const
    {
        return startApart([&] {
            alarm(60); // for one that hangs
            if (bus) {
                setenv("XDG_DATA_HOME", (home.root / "other").c_str(), 1);
            }
            checks();
        });
    }

    TemporaryHome home;
    std::unique_ptr<Bus> bus = GetParam() ? std::make_unique<Bus>() : nullptr;
    SingleInstance first;
};

INSTANTIATE_TEST_SUITE_P(OnBus, SingleInstanceTest, testing::Bool());

TEST_P(SingleInstanceTest, aSecondHandsItsActivationToTheFirst)
{
    ASSERT_FALSE(first.isSecond());
    ASSERT_EQ(first.isOnBus(), GetParam());
    first.takeActivation(); // what the bus has to say of itself
    for (const auto* token : {"token-1", "", "token-2"}) {
        const auto second =
            startSecond([&] { EXPECT_EQ(becomeOnlyInstance(token, std::chrono::seconds(30)), nullptr); });
        pollfd waiting{first.activationDescriptor(), POLLIN, 0};
        std::optional<std::string> taken;
        while (!taken && poll(&waiting, 1, 30000) == 1) {
            taken = first.takeActivation();
        }
        EXPECT_EQ(taken, token);
        EXPECT_TRUE(passed(second));
    }
    EXPECT_EQ(first.takeActivation(), std::nullopt);
    EXPECT_EQ(fs::status(home.data()).permissions(), fs::perms::owner_all);
}

TEST_P(SingleInstanceTest, manyEndWhileTheFirstIsFrozen)
{
    std::array<pid_t, 5> starts{};
    for (auto& start : starts) {
        if (&start == &starts.back()) {
            fs::remove(home.data() / "instance.socket"); // as before it listens
        }
        start = startSecond(
            [] { EXPECT_THROW(becomeOnlyInstance("token", std::chrono::seconds(2)), std::runtime_error); });
    }
    for (const auto start : starts) {
        EXPECT_TRUE(passed(start));
    }
}

TEST(SingleInstance, isOneWhateverLiesInTheLocksPlace)
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
            const SingleInstance first;
            EXPECT_FALSE(first.isSecond());
            EXPECT_TRUE(passed(startApart([] { EXPECT_TRUE(SingleInstance().isSecond()); })));
        }))) << &place - obstacles.data();
    }
}

} // namespace

} // namespace MirrowvaleAuthenticator
