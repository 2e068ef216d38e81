#include "platform/DeviceCredentialStore.h"

#include "platform/PrivateFolder.h"
#include "tests/support/KeychainEntries.h"
#include "tests/support/ScriptedCredentialStore.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace MirrowvaleAuthenticator;

namespace {

using Operation = ScriptedCredentialStore::Operation;

constexpr auto service = "a.service";
constexpr auto markName = "a.service.location";
constexpr std::string_view absent;
constexpr std::string_view inKeyring = "keyring\n";
constexpr std::string_view inSealedFiles = "sealed files\n";

/// Two stores and a state folder, and what a search and a save make of them.
struct Case {
    const char* name;
    std::string_view mark; ///< or absent
    std::string_view sealedData; ///< or absent
    std::string_view keyringData; ///< or absent
    OSStatus keyringStatus; ///< of all its operations
    OSStatus found;
    OSStatus saved;
    std::string_view foundData;
    std::string_view sealedDataAfter;
    std::string_view keyringDataAfter;
    std::string_view markAfter;
};

void PrintTo(const Case& entry, std::ostream* stream)
{
    *stream << entry.name;
}

constexpr Case cases[] = {
    {"firstWithAKeyring", absent, absent, absent, errSecSuccess, errSecItemNotFound, errSecSuccess, absent,
     absent, "new", inKeyring},
    {"firstWithoutAKeyring", absent, absent, absent, errSecNotAvailable, errSecItemNotFound, errSecSuccess,
     absent, "new", absent, inSealedFiles},
    {"firstAndTheKeyringFails", absent, absent, absent, errSecIO, errSecIO, errSecIO, absent, absent, absent,
     absent},
    {"inTheKeyring", inKeyring, absent, "old", errSecSuccess, errSecSuccess, errSecSuccess, "old", absent,
     "new", inKeyring},
    {"inTheKeyringWhichIsGone", inKeyring, absent, "old", errSecNotAvailable, errSecNotAvailable,
     errSecNotAvailable, absent, absent, "old", inKeyring},
    {"inTheKeyringWhichStaysLocked", inKeyring, absent, "old", errSecUserCanceled, errSecUserCanceled,
     errSecUserCanceled, absent, absent, "old", inKeyring},
    {"inTheKeyringBesideASealedFile", inKeyring, "stray", "old", errSecNotAvailable, errSecNotAvailable,
     errSecNotAvailable, absent, "stray", "old", inKeyring},
    {"deletedFromTheKeyringByItsUser", inKeyring, absent, absent, errSecSuccess, errSecItemNotFound,
     errSecSuccess, absent, absent, "new", inKeyring},
    {"inASealedFileBesideAKeyring", inSealedFiles, "old", "stray", errSecSuccess, errSecSuccess,
     errSecSuccess, "old", "new", "stray", inSealedFiles},
    {"inTheKeyringMarkLost", absent, absent, "old", errSecSuccess, errSecSuccess, errSecSuccess, "old",
     absent, "new", inKeyring},
    {"inASealedFileMarkLost", absent, "old", "stray", errSecSuccess, errSecSuccess, errSecSuccess, "old",
     "new", "stray", absent},
    {"damagedMark", "keyrin", "old", "old", errSecSuccess, errSecDecode, errSecDecode, absent, "old", "old",
     "keyrin"},
};

std::string fileIn(const std::filesystem::path& path)
{
    const auto folder = PrivateFolder::open(path);
    const auto bytes = folder ? folder->read(markName) : std::nullopt;
    return std::string(bytes ? std::string_view(*bytes) : absent);
}

OSStatus save(CredentialStore& store, std::string_view data)
{
    const auto status = store.update(itemName(service, "vault"), itemContent(data));
    return status == errSecItemNotFound ? store.add(item(service, "vault", data)) : status;
}

struct DeviceCredentialStoreTest : testing::Test {
    TemporaryHome home;
    ScriptedCredentialStore keyring;
    ScriptedCredentialStore sealedFiles;
    DeviceCredentialStore store{keyring, sealedFiles, home.state()};
};

struct DeviceCredentialStoreTable : DeviceCredentialStoreTest, testing::WithParamInterface<Case> { };

INSTANTIATE_TEST_SUITE_P(Places, DeviceCredentialStoreTable, testing::ValuesIn(cases),
                         [](const auto& instance) { return instance.param.name; });

TEST_P(DeviceCredentialStoreTable, anItemStaysWhereItWasCreated)
{
    const auto& entry = GetParam();
    if (entry.mark != absent) {
        PrivateFolder::openOrCreate(home.state()).write(markName, entry.mark);
    }
    if (entry.sealedData != absent) {
        sealedFiles.put(service, "vault", entry.sealedData);
    }
    if (entry.keyringData != absent) {
        keyring.put(service, "vault", entry.keyringData);
    }
    for (const auto operation : {Operation::copyMatching, Operation::update, Operation::add}) {
        keyring.answerAlways(operation, entry.keyringStatus);
    }

    SecResult result;
    EXPECT_EQ(store.copyMatching(itemSearch(service, "vault"), result), entry.found);
    const auto* data = std::get_if<SecretString>(&result);
    EXPECT_EQ(data == nullptr ? absent : std::string_view(*data), entry.foundData);
    EXPECT_EQ(save(store, "new"), entry.saved);
    EXPECT_EQ(sealedFiles.data(service, "vault").value_or(""), entry.sealedDataAfter);
    EXPECT_EQ(keyring.data(service, "vault").value_or(""), entry.keyringDataAfter);
    EXPECT_EQ(fileIn(home.state()), entry.markAfter);
}

TEST_F(DeviceCredentialStoreTest, aFailedCreationLeavesAMarkOnlyWhereAnItemMayBe)
{
    keyring.answerNext(Operation::add, errSecUserCanceled);
    EXPECT_EQ(save(store, "new"), errSecUserCanceled);
    EXPECT_EQ(fileIn(home.state()), absent);

    keyring.answerNext(Operation::copyMatching, errSecItemNotFound); // for the update
    keyring.answerNext(Operation::copyMatching, errSecItemNotFound); // for the add
    keyring.answerNext(Operation::copyMatching, errSecNotAvailable); // nobody can tell whether it was made
    keyring.answerNext(Operation::add, errSecNotAvailable);
    EXPECT_EQ(save(store, "new"), errSecNotAvailable);
    EXPECT_EQ(fileIn(home.state()), inKeyring);
}

TEST_F(DeviceCredentialStoreTest, withoutAPlaceForItsMarkNothingIsCreated)
{
    std::filesystem::create_directories(home.state().parent_path());
    std::filesystem::create_symlink("/nonexistent", home.state());
    EXPECT_NE(save(store, "new"), errSecSuccess);
    EXPECT_EQ(keyring.itemCount() + sealedFiles.itemCount(), 0U);
}

} // namespace
