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
    bool isInKeyring;
    bool isSealed;
    const char* loaded; ///< the data, or nothing where the load fails with the keyring's answer
    char savedIn; ///< 'k', 's', or '-' where the save fails, too
    bool hasReserve;
    const char* recordAfter;
};

} // namespace

TEST(DeviceStore, findsTheItemsPlaceByWhatTheKeyringAnswers)
{
    const auto ok = errSecSuccess;
    // clang-format off
    const Row table[] = {
        {"",            ok,     true,  false, "keyring", 'k', true,  keyringRecord},
        {sealedRecord,  ok,     true,  true,  "keyring", 'k', true,  keyringRecord},
        {"",            ok,     false, false, "",        'k', true,  keyringRecord},
        {"",            ok,     false, true,  "sealed",  's', false, sealedRecord},
        {keyringRecord, ok,     false, true,  "sealed",  's', false, keyringRecord},
        {sealedRecord,  locked, false, true,  "sealed",  's', false, sealedRecord},
        {sealedRecord,  locked, false, false, nullptr,   '-', true,  sealedRecord},
        {"",            locked, true,  true,  nullptr,   '-', true,  ""},
        {"damaged",     errSecUserCanceled, true, true, nullptr, '-', true, "damaged"},
        {keyringRecord, away,   false, true,  nullptr,   '-', true,  keyringRecord},
        {"",            away,   false, true,  "sealed",  's', false, ""},
        {"",            away,   false, false, "",        's', false, ""},
        {sealedRecord,  errSecIO, false, true, "sealed", 's', false, sealedRecord},
        {"keyrin",      ok,     true,  false, "keyring", 'k', true,  keyringRecord},
        {"sealed files", ok,    true,  false, "keyring", 'k', true,  keyringRecord},
        {"keyrin",      away,   false, false, "",        's', false, "keyrin"},
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
        if (row.isInKeyring) {
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
        if (row.keyring != ok) { // one that held the item is searched thoroughly, nobody is asked in vain
            const bool isQuiet = row.record == std::string_view(sealedRecord) && row.isSealed;
            const bool isThorough = row.record == std::string_view(keyringRecord);
            EXPECT_EQ(keyring.lastSearch,
                      isQuiet          ? Search::quiet
                          : isThorough ? Search::thorough
                                       : Search::usual);
        }
        if (device.update(tokenStoreItem, "new") == errSecItemNotFound) {
            device.add(tokenStoreItem, "new");
        }
        EXPECT_EQ(keyring.items[tokenStoreItem] == "new", row.savedIn == 'k');
        EXPECT_EQ(sealed.items[tokenStoreItem] == "new", row.savedIn == 's');
        EXPECT_EQ(device.reserve(), row.hasReserve ? &sealed : nullptr);
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
