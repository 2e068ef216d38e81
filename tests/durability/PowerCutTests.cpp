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
/// @returns how many disks were looked at
std::size_t check(const Recording& recording)
{
    const auto tears = static_cast<std::size_t>(amount("MIRROWVALE_TEARS", 2));
    std::size_t states = 0;
    std::set<DiskModel::Tree> seen;
    auto disk = recording.disk;
    for (std::size_t done = 0; done <= recording.calls.size(); ++done) {
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
            ++states;
            if (!testing::Test::HasFailure() && seen.insert(tree).second) {
                EXPECT_EQ(faultOf(tree, recording, allowed), "") << "cut before call " << done;
            }
        });
    }
    return states;
}

} // namespace

TEST(PowerCut, LeavesTheOldOrTheNewList)
{
    const auto stride = static_cast<std::size_t>(amount("MIRROWVALE_KILL_STRIDE", 3));
    for (const auto& start : starts) {
        SCOPED_TRACE(start.name);
        const auto recording = record(start);
        std::cout << start.name << ": " << check(recording) << " states";
        std::size_t states = 0;
        for (std::size_t killedAt = 0; killedAt <= recording.calls.size(); killedAt += stride) {
            SCOPED_TRACE("killed before call " + std::to_string(killedAt));
            states += check(record(start, killedAt));
        }
        std::cout << ", after a save killed before each of " << 1 + recording.calls.size() / stride
                  << " calls: " << states << "\n";
    }
}

} // namespace MirrowvaleAuthenticator
