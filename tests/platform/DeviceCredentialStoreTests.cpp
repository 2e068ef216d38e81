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
    const char* sealed; ///< the data in the sealed files, or nothing where these cannot be read
    const char* loaded; ///< the data, or nothing where the load fails with that answer
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
        {"",             ok,                 usual,    "",       "keyring", 'k', keyringRecord},
        {sealedRecord,   ok,                 usual,    "sealed", "keyring", 'k', keyringRecord},
        {"",             ok,                 usual,    "",       "",        'k', keyringRecord},
        {"",             ok,                 usual,    "sealed", "sealed",  's', sealedRecord},
        {keyringRecord,  ok,                 thorough, "sealed", "sealed",  's', keyringRecord},
        {sealedRecord,   locked,             quiet,    "sealed", "sealed",  's', sealedRecord},
        {sealedRecord,   locked,             usual,    "",       nullptr,   '-', sealedRecord},
        {"",             locked,             usual,    "sealed", nullptr,   '-', ""},
        {"damaged",      errSecUserCanceled, usual,    "sealed", nullptr,   '-', "damaged"},
        {keyringRecord,  away,               thorough, "sealed", nullptr,   '-', keyringRecord},
        {"",             away,               usual,    "sealed", "sealed",  's', ""},
        {"",             away,               usual,    "",       "",        's', ""},
        {sealedRecord,   errSecIO,           quiet,    "sealed", "sealed",  's', sealedRecord},
        {"keyrin",       ok,                 usual,    "",       "keyring", 'k', keyringRecord},
        {"sealed files", ok,                 usual,    "",       "keyring", 'k', keyringRecord},
        {"keyrin",       away,               usual,    "",       "",        's', "keyrin"},
        {"",             ok,                 usual,    nullptr,  nullptr,   '-', ""},
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
        if (row.sealed == nullptr) {
            sealed.answerAlways(errSecIO);
        } else if (*row.sealed) {
            sealed.items[tokenStoreItem] = row.sealed;
        }
        keyring.answerAlways(row.keyring);

        SecResult result;
        const auto status = device.read(tokenStoreItem, Search::usual, result);
        const auto failure = row.sealed == nullptr ? errSecIO : row.keyring;
        EXPECT_EQ(status, row.loaded == nullptr ? failure : *row.loaded ? ok : errSecItemNotFound);
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

} // namespace MirrowvaleAuthenticator
