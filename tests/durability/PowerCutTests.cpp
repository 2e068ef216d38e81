#include "tests/durability/DiskModel.h"
#include "tests/durability/Vault.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

namespace MirrowvaleAuthenticator {

namespace {

/// A save, or a killed one and another, as the kernel saw it.
struct Recording {
    DiskModel disk; ///< before
    std::multiset<std::string> treasures;
    std::set<std::string> allowed; ///< what a start may find after a cut on the way
    std::string saved = listName(2); ///< what it has to find after the last call
    std::vector<SystemCall> calls{};
    std::size_t checkedFrom = 0; ///< cuts before this call are another recording's
    /// The keyring's lists, each from a call on; a keyring's own crashes are tried in tests/keyring.
    std::map<std::size_t, std::string> keyring{};
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
    tap.largestTransfer = 100;
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

/// List 0 is in the keyring, list 9 was kept in the reserve while that could not be reached. List 2 is saved
/// in the place of both, or kept in the reserve, since the keyring cannot be reached again.
Recording recordTwoPlaces(bool isReached)
{
    Vault vault;
    SystemCallTap tap;
    vault.keyring.answerAlways(errSecSuccess);
    EXPECT_EQ(Vault::save(0), "");
    vault.keyring.answerAlways(errSecNotAvailable);
    EXPECT_EQ(Vault::save(9), statusMessage(errSecNotAvailable));
    const auto stored = [&] { return std::string(vault.keyring.items.at(tokenStoreItem)); };
    Recording recording{DiskModel(vault.home.root), {}, {"list 0 + list 9"}};
    recording.keyring[0] = stored();
    tap.recorded.clear();
    tap.largestTransfer = 100;
    if (isReached) {
        vault.keyring.answerAlways(errSecSuccess);
        recording.allowed.insert({"list 0 + list 2 + list 9", "list 2 + list 9", "list 2"});
    } else {
        recording.saved = "list 0 + list 2"; // list 9 was shown, and is deleted
        recording.allowed.insert(recording.saved);
    }
    tap.fault = [&, last = stored()](std::size_t) mutable {
        if (const auto now = stored(); now != last) {
            last = recording.keyring[tap.recorded.size()] = now;
        }
        return 0;
    };
    EXPECT_EQ(Vault::save(2), isReached ? "" : statusMessage(errSecNotAvailable));
    recording.calls = std::move(tap.recorded);
    recording.keyring[recording.calls.size()] = stored();
    return recording;
}

/// What is wrong with a disk that a cut left, or nothing.
std::string faultOf(const DiskModel::Tree& tree, const Recording& recording,
                    const std::set<std::string>& allowed, const std::string* keyringList)
{
    static Vault vault;
    vault.clear();
    vault.keyring.answerAlways(keyringList == nullptr ? errSecNotAvailable : errSecSuccess);
    if (keyringList != nullptr) {
        vault.keyring.items[tokenStoreItem] = *keyringList;
    }
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
void check(const Recording& recording)
{
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
        const auto& allowed = isSaved ? std::set{recording.saved} : recording.allowed;
        const auto list = recording.keyring.upper_bound(done);
        const auto* keyringList = list == recording.keyring.begin() ? nullptr : &std::prev(list)->second;
        if (isSaved) {
            seen.clear(); // what was good enough on the way may be so no more
        }
        disk.forEachState([&](const DiskModel::Tree& tree) {
            if (!testing::Test::HasFailure() && seen.insert(tree).second) {
                EXPECT_EQ(faultOf(tree, recording, allowed, keyringList), "") << "cut before call " << done;
            }
        });
    }
}

} // namespace

TEST(PowerCut, LosesNoTokenOfTwoPlaces)
{
    for (const bool isReached : {true, false}) {
        const auto recording = recordTwoPlaces(isReached);
        EXPECT_FALSE(recording.calls.empty());
        check(recording);
    }
}

TEST(PowerCut, LeavesTheOldOrTheNewList)
{
    for (const auto& start : starts) {
        SCOPED_TRACE(start.name);
        const auto recording = record(start);
        check(recording);
        for (std::size_t killedAt = 0; killedAt <= recording.calls.size(); ++killedAt) {
            SCOPED_TRACE("after a save killed before call " + std::to_string(killedAt));
            check(record(start, killedAt));
        }
    }
}

} // namespace MirrowvaleAuthenticator
