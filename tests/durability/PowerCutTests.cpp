#include "tests/durability/DiskModel.h"
#include "tests/durability/Vault.h"

#include <gtest/gtest.h>
#include <iostream>
#include <set>

namespace MirrowvaleAuthenticator {

namespace {

/// A save, or a killed one and another, as the kernel saw it.
struct Recording {
    DiskModel disk; ///< before
    std::multiset<std::string> treasures;
    std::set<std::string> allowed; ///< what a start may find after a cut on the way
    std::vector<SystemCall> calls{};
    std::size_t checkedFrom = 0; ///< cuts before this call are another recording's
};

/// How many disks were looked at, and the first thing that should not have been found.
struct Verdict {
    std::size_t states = 0;
    std::size_t distinct = 0;
    std::string fault;
};

/// Saves list 2. Where `killedAt` is given, the program first dies before that call of a save of list 1, and
/// is started again.
Recording record(const Start& start, std::optional<std::size_t> killedAt = {})
{
    const Vault vault;
    SystemCallTap tap;
    auto treasures = start.make(vault);
    Recording recording{DiskModel(vault.home.root), std::move(treasures), {Vault::found(), listName(2)}};
    tap.recorded.clear();
    tap.largestWrite = 100;
    if (killedAt) {
        recording.allowed.insert(listName(1));
        tap.fault = [&](std::size_t) { return tap.recorded.size() >= *killedAt ? EIO : 0; };
        Vault::save(1);
        tap.fault = {};
        recording.checkedFrom = tap.recorded.size();
    }
    EXPECT_EQ(Vault::save(2), "") << start.name;
    recording.calls = std::move(tap.recorded);
    return recording;
}

/// What is wrong with a disk that a cut left, or nothing.
std::string faultOf(const DiskModel::Tree& tree, const Recording& recording,
                    const std::set<std::string>& allowed)
{
    static const Vault vault;
    vault.clear();
    for (const auto& [path, bytes] : tree) {
        if (bytes) {
            overwrite(vault.home.root / path, *bytes);
        } else {
            fs::create_directory(vault.home.root / path);
        }
    }
    const auto found = Vault::found();
    if (!allowed.contains(found)) {
        return "found " + found;
    }
    if (!vault.keeps(recording.treasures)) {
        return "lost what was to be set aside";
    }
    const SystemCallTap unflushed;
    const auto message = Vault::save(3);
    return Vault::found() == listName(3) ? "" : "the next save failed: " + message;
}

/// Cuts the power before and after each call, in every way that the disk may take it.
Verdict check(const Recording& recording)
{
    const auto tears = static_cast<std::size_t>(amount("MIRROWVALE_TEARS", 2));
    Verdict verdict;
    std::set<DiskModel::Tree> seen;
    auto disk = recording.disk;
    for (std::size_t done = 0; done <= recording.calls.size() && verdict.fault.empty(); ++done) {
        if (done > 0) {
            disk.apply(recording.calls[done - 1]);
        }
        if (done < recording.checkedFrom) {
            continue;
        }
        const bool isSaved = done == recording.calls.size();
        const auto& allowed = isSaved ? std::set{listName(2)} : recording.allowed;
        if (isSaved) {
            seen.clear(); // what was good enough on the way may be so no more
        }
        disk.forEachState(tears, [&](const DiskModel::Tree& tree) {
            ++verdict.states;
            if (verdict.fault.empty() && seen.insert(tree).second) {
                ++verdict.distinct;
                verdict.fault = faultOf(tree, recording, allowed);
            }
        });
    }
    return verdict;
}

} // namespace

TEST(PowerCut, LeavesTheOldOrTheNewList)
{
    for (const auto& start : starts) {
        const auto verdict = check(record(start));
        EXPECT_EQ(verdict.fault, "") << start.name;
        std::cout << start.name << ": " << verdict.states << " states, " << verdict.distinct << " distinct\n";
    }
}

TEST(PowerCut, AfterAKilledSaveLeavesTheOldOrTheNewList)
{
    for (const auto& start : starts) {
        const auto calls = record(start).calls.size();
        const auto stride = static_cast<std::size_t>(amount("MIRROWVALE_KILL_STRIDE", 5));
        Verdict sum;
        for (std::size_t killedAt = 0; killedAt <= calls; killedAt += stride) {
            const auto verdict = check(record(start, killedAt));
            EXPECT_EQ(verdict.fault, "") << start.name << ", killed before call " << killedAt;
            sum.states += verdict.states;
            sum.distinct += verdict.distinct;
        }
        std::cout << start.name << ", killed before " << 1 + calls / stride << " calls: " << sum.states
                  << " states, " << sum.distinct << " distinct\n";
    }
}

} // namespace MirrowvaleAuthenticator
