#include "storage/TokenMerge.h"

#include "tests/durability/SystemCallTap.h"
#include "tests/durability/Vault.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>
#include <iostream>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace MirrowvaleAuthenticator {

namespace {

/// What a call may fail with; one that is interrupted is repeated.
constexpr std::pair<int, OSStatus> errors[] = {
    {EIO, errSecIO},          {ENOSPC, errSecDiskFull}, {EDQUOT, errSecDiskFull}, {EPERM, errSecWrPerm},
    {EMFILE, errSecAllocate}, {ENFILE, errSecAllocate}, {EINTR, errSecSuccess},
};

fs::path moved(const fs::path& path)
{
    return path.string() + ".moved";
}

/// What may lie in the place of a file or folder, which was moved.
struct Impostor {
    const char* name;
    OSStatus status; ///< of loads and saves
    bool (*put)(const fs::path& path); ///< false where this user cannot make it
    bool isFile = false; ///< in a file's place only
};

const Impostor impostors[] = {
    {"a symbolic link", errSecIO,
     [](const fs::path& path) { return symlink(moved(path).c_str(), path.c_str()) == 0; }, true},
    {"a pipe", errSecIO, [](const fs::path& path) { return mkfifo(path.c_str(), 0600) == 0; }},
    {"another user's", errSecWrPerm,
     [](const fs::path& path) {
         fs::copy(moved(path), path);
         return chown(path.c_str(), geteuid() + 1, getegid()) == 0;
     }},
    {"a folder", errSecIO, [](const fs::path& path) { return fs::create_directory(path); }, true},
    {"larger than any memory", errSecAllocate,
     [](const fs::path& path) {
         overwrite(path, "");
         return truncate(path.c_str(), std::int64_t(1) << 40) == 0;
     },
     true},
};

/// Gives this process a small disk of its own at a folder.
bool mountSmallDisk(const fs::path& folder)
{
    const auto mapToSelf = [](auto id) { return std::to_string(id) + " " + std::to_string(id) + " 1"; };
    const auto users = mapToSelf(geteuid());
    const auto groups = mapToSelf(getegid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    overwrite("/proc/self/setgroups", "deny");
    overwrite("/proc/self/uid_map", users);
    overwrite("/proc/self/gid_map", groups);
    return mount("small", folder.c_str(), "tmpfs", 0, "size=64k,mode=0700") == 0;
}

/// A save of list 9 fails with its status and keeps it in memory, and the old list on disk.
void expectRefusal(TokenStore& store, const Vault& vault, OSStatus status)
{
    const auto before = contents(vault.item);
    EXPECT_EQ(Vault::save(store, 9), statusMessage(status));
    EXPECT_EQ(nameOf(*store.tokens), listName(9));
    EXPECT_EQ(contents(vault.item), before);
}

} // namespace

TEST(Fault, InAPlaceGivesItsStatusAndSpoilsNothing)
{
    for (const auto& impostor : impostors) {
        const Vault vault;
        const SystemCallTap unflushed;
        for (const auto& path : {vault.item, vault.key, vault.home.data(), vault.home.state()}) {
            SCOPED_TRACE(impostor.name + (" in the place of " + path.string()));
            ASSERT_EQ(Vault::save(1), "");
            TokenStore running;
            if (impostor.isFile && fs::is_directory(path)) {
                continue;
            }
            fs::rename(path, moved(path));
            if (impostor.put(path)) {
                const auto message = statusMessage(impostor.status);
                EXPECT_EQ(Vault::save(running, 2), message);
                EXPECT_EQ(nameOf(*running.tokens), listName(2));
                EXPECT_EQ(Vault::found(), message);
                EXPECT_EQ(Vault::save(3), message);
            }
            fs::remove_all(path);
            fs::rename(moved(path), path);
            EXPECT_EQ(Vault::found(), listName(1));
            EXPECT_EQ(vault.files().size(), 2U);
            running.persist();
            EXPECT_EQ(Vault::found(), nameOf(*running.tokens));
        }
    }
}

TEST(Fault, NoneBehindALinkToAFolderOfTheUsersOwn)
{
    const Vault vault;
    ASSERT_EQ(Vault::save(1), "");
    for (const auto& path : {vault.home.data(), vault.home.state()}) {
        fs::rename(path, moved(path));
        fs::create_directory_symlink(moved(path), path);
        EXPECT_EQ(Vault::found(), listName(1));
        EXPECT_EQ(Vault::save(1), "");
        if (chown(path.c_str(), geteuid() + 1, getegid()) == 0) {
            EXPECT_EQ(Vault::found(), statusMessage(errSecWrPerm));
            ASSERT_EQ(chown(path.c_str(), geteuid(), getegid()), 0);
        }
    }
}

TEST(Fault, OfAnyCallDuringASaveLeavesTheOldOrTheNewList)
{
    for (std::size_t variant = 0; variant < 2 * std::size(starts); ++variant) {
        const auto& start = starts[variant / 2];
        const bool stays = variant % 2 == 1; // later calls fail too
        bool isReached = true;
        for (std::size_t faulty = 0; isReached; ++faulty) {
            const auto [error, status] = errors[(variant + faulty) % std::size(errors)];
            const bool isRepeated = status == errSecSuccess;
            SCOPED_TRACE(std::string(start.name) + ", errno " + std::to_string(error) + " in call "
                         + std::to_string(faulty) + (stays ? " and later" : ""));
            const Vault vault;
            SystemCallTap tap;
            const auto treasures = start.make(vault);
            const auto before = Vault::found();
            TokenStore store;
            tap.callCount = 0;
            tap.fault = [&, failing = error](std::size_t number) {
                return number == faulty || (stays && !isRepeated && number > faulty) ? failing : 0;
            };
            const auto message = Vault::save(store, 2);
            tap.fault = {};
            isReached = tap.callCount > faulty;

            ASSERT_EQ(message, isReached && !isRepeated ? statusMessage(status) : "");
            ASSERT_EQ(nameOf(*store.tokens), listName(2));
            const auto found = Vault::found();
            ASSERT_TRUE(found == listName(2) || (message != "" && found == before)) << found;
            ASSERT_EQ(Vault::save(store, 3), "");
            ASSERT_EQ(Vault::found(), listName(3));
            ASSERT_TRUE(vault.keeps(treasures));
        }
    }
}

TEST(Fault, OfAnyCallDuringALoadIsToldAndNothingIsLost)
{
    const Vault vault;
    ASSERT_EQ(Vault::save(1), "");
    for (const auto& [error, status] : errors) {
        bool isReached = true;
        for (std::size_t faulty = 0; isReached; ++faulty) {
            const auto before = vault.files();
            SystemCallTap tap;
            tap.fault = [&, failing = error](std::size_t number) { return number == faulty ? failing : 0; };
            TokenStore store;
            isReached = tap.callCount > faulty;
            const bool isTold = isReached && status != errSecSuccess;
            ASSERT_EQ(store.lastError->value_or(""), isTold ? statusMessage(status) : "") << faulty;
            ASSERT_EQ(nameOf(*store.tokens), isTold ? "nothing" : listName(1));
            ASSERT_EQ(vault.files(), before);
            tap.fault = {};
            ASSERT_EQ(Vault::save(store, 2), "");
            ASSERT_EQ(Vault::found(), isTold ? "list 1 + list 2" : listName(2));
            ASSERT_EQ(Vault::save(1), "");
        }
    }
}

TEST(Fault, OfTheDiskIsToldAndTheNextSaveWorks)
{
    const Vault vault;
    EXPECT_TRUE(passed(startApart([&] {
        if (!mountSmallDisk(vault.home.root)) {
            std::cout << "no disk can be mounted here\n";
            return;
        }
        ASSERT_EQ(Vault::save(1), "");
        TokenStore store;
        overwrite(vault.home.root / "filler", std::string(100'000, 'x'));
        expectRefusal(store, vault, errSecDiskFull);
        fs::remove(vault.home.root / "filler");
        EXPECT_EQ(Vault::save(store, 2), "");

        fs::permissions(vault.home.data(), fs::perms(0755)); // as copied back
        fs::permissions(vault.item, fs::perms(0644));
        ASSERT_EQ(mount("", vault.home.root.c_str(), "", MS_REMOUNT | MS_RDONLY, ""), 0);
        expectRefusal(store, vault, errSecWrPerm);
        EXPECT_EQ(Vault::found(), listName(2));
        ASSERT_EQ(mount("", vault.home.root.c_str(), "", MS_REMOUNT, ""), 0);
        EXPECT_EQ(Vault::save(store, 3), "");

        // A disk of its own below a folder on one that cannot be written to.
        for (const auto& folder : {vault.home.data(), vault.home.state()}) {
            ASSERT_EQ(mount("own", folder.c_str(), "tmpfs", 0, "size=64k,mode=0700"), 0);
        }
        ASSERT_EQ(mount("", vault.home.root.c_str(), "", MS_REMOUNT | MS_RDONLY, ""), 0);
        EXPECT_EQ(Vault::save(4), "");
        EXPECT_EQ(Vault::found(), listName(4));
    })));
    TokenStore store;
    fs::create_symlink(vault.home.root / "nowhere", vault.home.root / "data");
    EXPECT_EQ(Vault::found(), statusMessage(errSecIO));
    EXPECT_EQ(Vault::save(store, 1), statusMessage(errSecIO));
    fs::remove(vault.home.root / "data");
    EXPECT_EQ(Vault::save(store, 1), "");
}

TEST(Fault, OfTheReservesFolderBringsNothingBackThatWasStored)
{
    Vault vault;
    EXPECT_TRUE(passed(startApart([&] {
        if (!mountSmallDisk(vault.home.root)) {
            std::cout << "no disk can be mounted here\n";
            return;
        }
        using enum ScriptedCredentialStore::Operation;
        vault.keyring.answerAlways(errSecSuccess);
        ASSERT_EQ(Vault::save(1), "");
        TokenStore store;
        const auto both = merged(numberedList(1), numberedList(2));
        vault.keyring.answerAlways(update, errSecDiskFull);
        store.tokens = both;
        store.persist(); // list 2 is in the reserve
        vault.keyring.answerAlways(errSecSuccess);
        const auto folder = vault.home.data();
        ASSERT_EQ(mount(folder.c_str(), folder.c_str(), "", MS_BIND, ""), 0);
        ASSERT_EQ(mount("", folder.c_str(), "", MS_REMOUNT | MS_BIND | MS_RDONLY, ""), 0);
        EXPECT_EQ(Vault::found(), "list 1 + list 2");
        EXPECT_EQ(Vault::save(1), ""); // list 2 is deleted
        EXPECT_EQ(Vault::found(), listName(1));
        ASSERT_EQ(umount(folder.c_str()), 0);
        EXPECT_EQ(Vault::found(), listName(1));
        vault.keyring.answerAlways(update, errSecDiskFull);
        TokenStore later;
        later.tokens = both;
        later.persist();
        vault.keyring.answerAlways(errSecSuccess);
        EXPECT_EQ(Vault::found(), "list 1 + list 2") << "a new reserve counts";
    })));
}

TEST(Fault, OfAWriteThatNeverEndedLeavesNothingBehind)
{
    const Vault vault;
    ASSERT_EQ(Vault::save(1), "");
    for (const auto* name : {"x.sealed.new", "x.sealed.new-1"}) {
        overwrite(vault.home.data() / name, "half");
    }
    const auto before = vault.files();
    PrivateFolder::openOrCreate(vault.home.data()).removeUnfinished();
    EXPECT_EQ(vault.files(), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(vault.home.data()), {}), 1);
}

TEST(Fault, NoneBelowAFolderThatThisUserMayNotReadOrChange)
{
    constexpr uid_t nobody = 65534;
    const Vault vault;
    EXPECT_TRUE(passed(startApart([&] {
        if (geteuid() == 0) { // who may do anything
            ASSERT_EQ(chown(vault.home.root.c_str(), nobody, nobody), 0);
            ASSERT_EQ(seteuid(nobody), 0);
        }
        for (const auto mode : {0300, 0500, 0100}) { // the first time, the folders below are made
            for (const auto& folder : {vault.home.data(), vault.home.state()}) {
                fs::create_directories(folder.parent_path());
                ASSERT_EQ(chmod(folder.parent_path().c_str(), static_cast<mode_t>(mode)), 0);
            }
            EXPECT_EQ(Vault::save(1), "") << std::oct << mode;
            EXPECT_EQ(Vault::found(), listName(1));
            fs::permissions(vault.home.data().parent_path(), fs::perms::owner_all);
            fs::permissions(vault.home.state().parent_path(), fs::perms::owner_all);
        }
    })));
}

TEST(Fault, OfModesIsMended)
{
    const Vault vault;
    const auto expectModes = [&] {
        for (const auto& path : {vault.home.data(), vault.home.state(), vault.item, vault.key}) {
            const auto mode = fs::is_directory(path) ? fs::perms::owner_all : fs::perms(0600);
            EXPECT_EQ(fs::symlink_status(path).permissions(), mode) << path;
            fs::permissions(path, fs::perms::all);
        }
    };
    const auto before = umask(0);
    EXPECT_EQ(Vault::save(1), "");
    expectModes();
    umask(0777);
    EXPECT_EQ(Vault::save(2), "");
    umask(before);
    expectModes();
    EXPECT_EQ(Vault::found(), listName(2));
    expectModes();
}

TEST(Fault, OfOneAfterAnotherKeepsEachCopy)
{
    const Vault vault;
    const SystemCallTap unflushed;
    std::multiset<std::string> treasures;
    const auto damage = [&](const fs::path& path, const std::string& bytes) {
        ASSERT_EQ(Vault::save(1), "");
        overwrite(path, bytes);
        treasures.insert(contents(vault.item));
        const auto before = vault.files();
        EXPECT_EQ(Vault::found(), statusMessage(errSecDecode));
        EXPECT_EQ(vault.files(), before);
        EXPECT_EQ(Vault::save(2), "");
        EXPECT_EQ(Vault::found(), listName(2));
        EXPECT_TRUE(vault.keeps(treasures));
    };
    ASSERT_EQ(Vault::save(1), "");
    for (const auto* bytes : {"damaged", "", "damaged otherwise"}) {
        damage(vault.item, bytes);
    }
    EXPECT_EQ(contents(vault.item.string() + ".unreadable-1"), "damaged");
    EXPECT_EQ(contents(vault.item.string() + ".unreadable-3"), "damaged otherwise");
    for (const std::size_t size : {0, 31, 32, 33}) {
        damage(vault.key, std::string(size, 'k'));
    }
}

TEST(Fault, OfAnyLengthAndAnyBitIsTold)
{
    const Vault vault;
    ASSERT_EQ(Vault::save(1), "");
    for (const auto& path : {vault.key, vault.item}) {
        const auto whole = contents(path);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            overwrite(path, whole.substr(0, size));
            ASSERT_EQ(Vault::found(), statusMessage(errSecDecode)) << path << " cut to " << size;
        }
        for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
            auto damaged = whole;
            damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ 1 << bit % 8);
            overwrite(path, damaged);
            ASSERT_EQ(Vault::found(), statusMessage(errSecDecode)) << path << " bit " << bit;
            ASSERT_EQ(contents(path), damaged);
        }
        overwrite(path, whole);
    }
    const auto sealed = contents(vault.item);
    EXPECT_EQ(contents(vault.key).size(), 32U);
    EXPECT_EQ(sealed.find("GEZDGNBV"), std::string::npos);
    EXPECT_EQ(sealed.find(contents(vault.key)), std::string::npos);
    EXPECT_EQ(Vault::save(1), "");
    EXPECT_NE(contents(vault.item), sealed) << "sealed twice under one nonce";

    EXPECT_EQ(credentialStore().add({tokenStoreItem.service, "other"}, "[]"), errSecSuccess);
    overwrite(vault.item, contents(vault.home.data() / (tokenStoreItem.service + "_other.sealed")));
    EXPECT_EQ(Vault::found(), statusMessage(errSecDecode)) << "another item's file opens";
    EXPECT_EQ(credentialStore().add(tokenStoreItem, "[]"), errSecDuplicateItem);
}

} // namespace MirrowvaleAuthenticator
