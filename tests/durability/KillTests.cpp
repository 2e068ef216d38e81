#include "tests/durability/Vault.h"
#include "tests/support/ChildProcess.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <random>
#include <sched.h>
#include <sys/mman.h>

namespace MirrowvaleAuthenticator {

namespace {

using Clock = std::chrono::steady_clock;

/// What the saving process tells, in memory that outlives it.
struct Progress {
    std::atomic<int> begun;
    std::atomic<int> finished;
};

/// Lets a process save ever newer lists from `next` on, and kills it a while after it has begun the list
/// `last`.
void killAfter(Clock::duration delay, Progress& progress, int next, int last)
{
    progress.begun = progress.finished = next - 1;
    const auto child = startApart([&] {
        TokenStore store;
        for (;; ++next) {
            progress.begun = next;
            ASSERT_EQ(Vault::save(store, next), "");
            progress.finished = next;
        }
    });
    while (progress.begun < last && waitpid(child, nullptr, WNOHANG) == 0) {
        sched_yield();
    }
    for (const auto moment = Clock::now() + delay; Clock::now() < moment;) { }
    ASSERT_EQ(kill(child, SIGKILL), 0) << "the saving process ended by itself";
    ASSERT_FALSE(passed(child));
}

} // namespace

TEST(Kill, LeavesTheOldOrTheNewListWhole)
{
    void* memory = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    auto& progress = *new (memory) Progress;
    std::mt19937_64 random{std::random_device()()};
    const Vault vault(fs::temp_directory_path());
    const int wanted = amount("MIRROWVALE_KILLS", 25);
    int number = 0; // lists differ from save to save, also in length
    int oldLists = 0;
    int newLists = 0;
    int firstSaves = 0;
    int betweenSaves = 0;
    while (oldLists + newLists < wanted) {
        const auto before = Clock::now();
        ASSERT_EQ(Vault::save(++number), "");
        const auto saveTime = Clock::now() - before;
        // Now and then it is the very first save, which also makes the folders and the key.
        const bool isFirst = number % 5 == 0;
        if (isFirst) {
            vault.clear();
        }
        const auto present = Vault::found();
        const int next = ++number;
        const auto delay = std::uniform_int_distribution<Clock::rep>(0, saveTime.count())(random);
        killAfter(Clock::duration(delay), progress, next, isFirst ? next : next + number % 3);

        const auto found = Vault::found();
        number = progress.begun;
        const auto oldList = progress.finished < next ? present : listName(progress.finished);
        if (progress.finished == number) {
            ++betweenSaves;
            ASSERT_EQ(found, oldList);
            continue;
        }
        ASSERT_TRUE(found == oldList || found == listName(number)) << found << ", not list " << number;
        ++(found == oldList ? oldLists : newLists);
        firstSaves += isFirst && number == next ? 1 : 0;
    }
    std::cout << "killed during " << wanted << " saves, " << firstSaves << " of them the first: old list "
              << oldLists << ", new list " << newLists << "; besides, between saves: " << betweenSaves
              << "\n";
    munmap(memory, sizeof(Progress));
}

} // namespace MirrowvaleAuthenticator
