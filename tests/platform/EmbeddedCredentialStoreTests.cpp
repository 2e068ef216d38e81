#include "platform/EmbeddedCredentialStore.h"

#include "tests/support/KeychainEntries.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace MirrowvaleAuthenticator {

namespace {

namespace fs = std::filesystem;

constexpr auto service = "org.test/service name.tokens";
constexpr auto account = "vault";

unsigned mode(const fs::path& path)
{
    struct stat status { };
    return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

class EmbeddedStore : public testing::Test {
protected:
    EmbeddedCredentialStore store() const { return {home.data(), home.state()}; }

    OSStatus add(std::string_view data, std::string_view name = account) const
    {
        return store().add(item(service, name, data));
    }
    OSStatus update(std::string_view data, std::string_view name = account) const
    {
        return store().update(itemName(service, name), itemContent(data));
    }

    /// What a search finds: the data, or the status.
    std::string found(std::string_view name = account) const
    {
        SecResult result;
        const auto status = store().copyMatching(itemSearch(service, name), result);
        const auto* data = std::get_if<SecretString>(&result);
        EXPECT_EQ(data != nullptr, status == errSecSuccess);
        return data != nullptr ? std::string(*data) : std::to_string(status);
    }

    fs::path itemFile(std::string_view name = account) const
    {
        return home.data() / ("org.test%2Fservice%20name.tokens_" + std::string(name) + ".sealed");
    }
    fs::path keyFile() const { return home.state() / "device.key"; }

    const std::string notFound = std::to_string(errSecItemNotFound);
    const std::string decodeError = std::to_string(errSecDecode);
    const TemporaryHome home;
};

} // namespace

TEST_F(EmbeddedStore, behavesLikeACredentialStore)
{
    EXPECT_EQ(found(), notFound);
    EXPECT_EQ(update("early"), errSecItemNotFound);
    EXPECT_FALSE(fs::exists(home.data())) << "nothing is written before there is an item";
    EXPECT_EQ(add("one"), errSecSuccess);
    EXPECT_EQ(add("two"), errSecDuplicateItem);
    EXPECT_EQ(found(), "one");
    EXPECT_EQ(update("three"), errSecSuccess);
    EXPECT_EQ(add("other", "vault2"), errSecSuccess);
    EXPECT_EQ(found(), "three");
    EXPECT_EQ(found("vault2"), "other");
    for (const auto& data : {std::string(), std::string("\0\xff\n", 3), std::string(3'000'000, 'x')}) {
        EXPECT_EQ(update(data), errSecSuccess);
        EXPECT_TRUE(found() == data);
    }
    for (const auto* name : {"", "Vault", "vault3", "../vault", "vault/"}) {
        EXPECT_EQ(found(name), notFound) << name;
        EXPECT_EQ(update("x", name), errSecItemNotFound) << name;
    }
    SecResult result;
    EXPECT_EQ(store().copyMatching(itemSearch("org.test/service", account), result), errSecItemNotFound);
    for (const auto key : {kSecClass, kSecAttrService, kSecAttrAccount}) {
        auto nameless = item(service, "vault4", "x");
        nameless.erase(key);
        EXPECT_EQ(store().add(nameless), errSecParam) << key;
        EXPECT_EQ(store().update(nameless, itemContent("x")), errSecParam) << key;
        EXPECT_EQ(store().copyMatching(nameless, result), errSecParam) << key;
    }
}

TEST_F(EmbeddedStore, isSealedAndForThisUserAloneWithItsKeyApart)
{
    const auto expectModes = [&] {
        for (const auto& folder : {home.data(), home.state()}) {
            EXPECT_EQ(mode(folder), 0700U);
        }
        for (const auto& file : {itemFile(), keyFile()}) {
            EXPECT_EQ(mode(file), 0600U);
        }
    };
    const auto before = umask(0);
    ASSERT_EQ(add("JBSWY3DPEHPK3PXP"), errSecSuccess);
    umask(0777);
    ASSERT_EQ(update("GEZDGNBVGY3TQOJQ"), errSecSuccess);
    umask(before);
    expectModes();

    const auto key = contents(keyFile());
    const auto sealed = contents(itemFile());
    EXPECT_EQ(key.size(), 32U);
    EXPECT_EQ(sealed.find("GEZDGNBV"), std::string::npos);
    EXPECT_EQ(sealed.find(key), std::string::npos);
    ASSERT_EQ(update("GEZDGNBVGY3TQOJQ"), errSecSuccess);
    EXPECT_NE(contents(itemFile()), sealed) << "sealed twice under one nonce";

    for (const auto& path : {home.data(), home.state(), itemFile(), keyFile()}) {
        fs::permissions(path, fs::perms::all);
    }
    EXPECT_EQ(found(), "GEZDGNBVGY3TQOJQ");
    expectModes();
}

TEST_F(EmbeddedStore, anotherKeyOrAnotherItemsFileDoesNotOpen)
{
    ASSERT_EQ(add("one"), errSecSuccess);
    const auto key = contents(keyFile());
    for (std::size_t bit = 0; bit < key.size() * 8; ++bit) {
        auto changed = key;
        changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << bit % 8));
        overwrite(keyFile(), changed);
        ASSERT_EQ(found(), decodeError) << "bit " << bit;
    }
    EXPECT_EQ(add("two"), errSecDuplicateItem);
    overwrite(keyFile(), key);
    EXPECT_EQ(found(), "one");

    ASSERT_EQ(add("two", "other"), errSecSuccess);
    overwrite(itemFile(), contents(itemFile("other")));
    EXPECT_EQ(found(), decodeError);
    EXPECT_EQ(found("other"), "two");
}

TEST(PrivateFolder, liesWhereTheEnvironmentSays)
{
    const TemporaryHome home;
    EXPECT_EQ(dataFolderPath(), home.data());
    EXPECT_EQ(stateFolderPath(), home.state());
    for (const auto* ignored : {"", "relative/path"}) {
        setenv("XDG_DATA_HOME", ignored, 1);
        setenv("XDG_STATE_HOME", ignored, 1);
        EXPECT_EQ(dataFolderPath(), home.root / "home/.local/share/mirrowvale-authenticator");
        EXPECT_EQ(stateFolderPath(), home.root / "home/.local/state/mirrowvale-authenticator");
    }
}

} // namespace MirrowvaleAuthenticator
