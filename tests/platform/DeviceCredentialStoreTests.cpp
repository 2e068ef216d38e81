#include "platform/credentials/DeviceCredentialStore.h"

#include "tests/support/ScriptedCredentialStore.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace MirrowvaleAuthenticator {

namespace {

constexpr auto keyringRecord = "keyring\n";
constexpr auto sealedRecord = "sealed files\n";
constexpr auto away = errSecNotAvailable;
constexpr auto locked = errSecInteractionNotAllowed;

/// What the places are like at a start, and what has to come of a load and a save.
struct Row {
    const char* record;
    OSStatus keyring; ///< its answer, where it does not look for its item
    Search search; ///< the last of it: one that held the item is searched thoroughly, nobody is asked in vain
    bool isSealed;
    const char* loaded; ///< the data, or nothing where the load fails with the keyring's answer
    char savedIn; ///< 'k', 's', or '-' where the save fails, too
    const char* recordAfter;
};

} // namespace

TEST(DeviceStore, findsTheItemsPlaceByWhatTheKeyringAnswers)
{
    using enum Search;
    const auto ok = errSecSuccess;
    // clang-format off
    const Row table[] = {
        {"",             ok,                 usual,    false, "keyring", 'k', keyringRecord},
        {sealedRecord,   ok,                 usual,    true,  "keyring", 'k', keyringRecord},
        {"",             ok,                 usual,    false, "",        'k', keyringRecord},
        {"",             ok,                 usual,    true,  "sealed",  's', sealedRecord},
        {keyringRecord,  ok,                 thorough, true,  "sealed",  's', keyringRecord},
        {sealedRecord,   locked,             quiet,    true,  "sealed",  's', sealedRecord},
        {sealedRecord,   locked,             usual,    false, nullptr,   '-', sealedRecord},
        {"",             locked,             usual,    true,  nullptr,   '-', ""},
        {"damaged",      errSecUserCanceled, usual,    true,  nullptr,   '-', "damaged"},
        {keyringRecord,  away,               thorough, true,  nullptr,   '-', keyringRecord},
        {"",             away,               usual,    true,  "sealed",  's', ""},
        {"",             away,               usual,    false, "",        's', ""},
        {sealedRecord,   errSecIO,           quiet,    true,  "sealed",  's', sealedRecord},
        {"keyrin",       ok,                 usual,    false, "keyring", 'k', keyringRecord},
        {"sealed files", ok,                 usual,    false, "keyring", 'k', keyringRecord},
        {"keyrin",       away,               usual,    false, "",        's', "keyrin"},
    };
    // clang-format on
    for (const auto& row : table) {
        SCOPED_TRACE(&row - table);
        const TemporaryHome home;
        const auto record = home.state() / (tokenStoreItem.service + ".location");
        std::filesystem::create_directories(home.state());
        overwrite(record, row.record);
        ScriptedCredentialStore keyring;
        ScriptedCredentialStore sealed;
        DeviceCredentialStore device(keyring, sealed, home.state());
        if (row.loaded != nullptr && row.loaded == std::string_view("keyring")) {
            keyring.items[tokenStoreItem] = "keyring";
        }
        if (row.isSealed) {
            sealed.items[tokenStoreItem] = "sealed";
        }
        keyring.answerAlways(row.keyring);

        SecResult result;
        const auto status = device.read(tokenStoreItem, Search::usual, result);
        EXPECT_EQ(status, row.loaded == nullptr ? row.keyring : *row.loaded ? ok : errSecItemNotFound);
        EXPECT_EQ(result.value_or(""), row.loaded == nullptr ? "" : row.loaded);
        EXPECT_EQ(keyring.lastSearch, row.search);
        if (device.update(tokenStoreItem, "new") == errSecItemNotFound) {
            device.add(tokenStoreItem, "new");
        }
        EXPECT_EQ(keyring.items[tokenStoreItem] == "new", row.savedIn == 'k');
        EXPECT_EQ(sealed.items[tokenStoreItem] == "new", row.savedIn == 's');
        EXPECT_EQ(device.reserve(), row.savedIn == 's' ? nullptr : &sealed);
        EXPECT_EQ(contents(record), row.recordAfter);
        EXPECT_EQ(device.remove(tokenStoreItem), errSecParam);
    }
}

TEST(DeviceStore, knowsNoPlaceWhileTheSealedFilesCannotBeRead)
{
    const TemporaryHome home;
    ScriptedCredentialStore keyring;
    ScriptedCredentialStore sealed;
    DeviceCredentialStore device(keyring, sealed, home.state());
    sealed.answerAlways(errSecIO);
    SecResult result;
    EXPECT_EQ(device.read(tokenStoreItem, Search::usual, result), errSecIO);
    EXPECT_EQ(device.update(tokenStoreItem, "new"), errSecIO);
    sealed.answerAlways(errSecSuccess);
    EXPECT_EQ(device.update(tokenStoreItem, "new"), errSecItemNotFound);
    EXPECT_EQ(device.add(tokenStoreItem, "new"), errSecSuccess);
    EXPECT_EQ(keyring.items[tokenStoreItem], "new");
}

} // namespace MirrowvaleAuthenticator
