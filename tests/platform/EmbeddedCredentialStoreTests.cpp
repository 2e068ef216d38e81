#include "platform/EmbeddedCredentialStore.h"

#include "tests/support/KeychainEntries.h"
#include "tests/support/TemporaryHome.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

namespace MirrowvaleAuthenticator {

namespace {

namespace fs = std::filesystem;

constexpr auto service = "org.test/service name.tokens";
constexpr auto account = "vault";

std::string contents(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void overwrite(const fs::path& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

unsigned mode(const fs::path& path)
{
    struct stat status { };
    return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

std::vector<fs::path> filesIn(const fs::path& folder)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    return files;
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

    /// The one file in a folder.
    static fs::path fileIn(const fs::path& folder)
    {
        const auto files = filesIn(folder);
        EXPECT_EQ(files.size(), 1U);
        return files.at(0);
    }

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
    const auto before = umask(0);
    ASSERT_EQ(add("JBSWY3DPEHPK3PXP"), errSecSuccess);
    umask(0777);
    ASSERT_EQ(update("GEZDGNBVGY3TQOJQ"), errSecSuccess);
    umask(before);

    const auto file = fileIn(home.data());
    const auto keyFile = fileIn(home.state());
    EXPECT_EQ(mode(home.data()), 0700U);
    EXPECT_EQ(mode(home.state()), 0700U);
    EXPECT_EQ(mode(file), 0600U);
    EXPECT_EQ(mode(keyFile), 0600U);

    const auto key = contents(keyFile);
    const auto sealed = contents(file);
    EXPECT_EQ(key.size(), 32U);
    EXPECT_EQ(sealed.find("GEZDGNBV"), std::string::npos);
    EXPECT_EQ(sealed.find(key), std::string::npos);
    ASSERT_EQ(update("GEZDGNBVGY3TQOJQ"), errSecSuccess);
    EXPECT_NE(contents(file), sealed) << "sealed twice under one nonce";
}

TEST_F(EmbeddedStore, closesWhatWasOpenedToOthers)
{
    ASSERT_EQ(add("one"), errSecSuccess);
    for (const auto& path : {home.data(), home.state(), fileIn(home.data()), fileIn(home.state())}) {
        fs::permissions(path, fs::perms::all);
    }
    EXPECT_EQ(found(), "one");
    EXPECT_EQ(mode(home.data()), 0700U);
    EXPECT_EQ(mode(home.state()), 0700U);
    EXPECT_EQ(mode(fileIn(home.data())), 0600U);
    EXPECT_EQ(mode(fileIn(home.state())), 0600U);
}

TEST_F(EmbeddedStore, whatWasTamperedWithReadsAsAStatus)
{
    ASSERT_EQ(add("[]"), errSecSuccess);
    for (const auto& path : {fileIn(home.data()), fileIn(home.state())}) {
        const auto whole = contents(path);
        for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
            auto changed = whole;
            changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << bit % 8));
            overwrite(path, changed);
            ASSERT_EQ(found(), decodeError) << path << " bit " << bit;
        }
        for (std::size_t size = 0; size < whole.size(); ++size) {
            overwrite(path, whole.substr(0, size));
            ASSERT_EQ(found(), decodeError) << path << " cut to " << size;
        }
        overwrite(path, whole + "x");
        EXPECT_EQ(found(), decodeError);
        overwrite(path, whole);
        EXPECT_EQ(found(), "[]");
    }
}

TEST_F(EmbeddedStore, anotherItemsFileDoesNotOpen)
{
    ASSERT_EQ(add("one"), errSecSuccess);
    const auto file = fileIn(home.data());
    ASSERT_EQ(add("two", "other"), errSecSuccess);
    for (const auto& path : filesIn(home.data())) {
        if (path != file) {
            fs::copy_file(path, file, fs::copy_options::overwrite_existing);
        }
    }
    EXPECT_EQ(found(), decodeError);
    EXPECT_EQ(found("other"), "two");
}

TEST_F(EmbeddedStore, anUpdateKeepsTheBytesThatCouldNotBeRead)
{
    ASSERT_EQ(add("one"), errSecSuccess);
    const auto file = fileIn(home.data());
    const auto isKept = [&](const std::string& bytes) {
        return std::ranges::count(filesIn(home.data()), bytes, contents) == 1;
    };

    const auto underLostKey = contents(file);
    fs::remove_all(home.state());
    EXPECT_EQ(found(), decodeError);
    EXPECT_EQ(add("two"), errSecDuplicateItem);
    EXPECT_EQ(contents(file), underLostKey);
    EXPECT_EQ(update("two"), errSecSuccess);
    EXPECT_EQ(found(), "two");
    EXPECT_TRUE(isKept(underLostKey));

    overwrite(file, "damaged");
    EXPECT_EQ(update("three"), errSecSuccess);
    EXPECT_EQ(found(), "three");
    EXPECT_TRUE(isKept(underLostKey));
    EXPECT_TRUE(isKept("damaged"));
    for (const auto& path : filesIn(home.data())) {
        EXPECT_EQ(mode(path), 0600U) << path;
    }
}

TEST_F(EmbeddedStore, followsNoSymbolicLink)
{
    ASSERT_EQ(add("one"), errSecSuccess);
    const auto target = home.root / "target";
    for (const auto& path : {fileIn(home.data()), fileIn(home.state()), home.data(), home.state()}) {
        fs::rename(path, target);
        fs::create_symlink(target, path);
        const auto before = fs::is_directory(target) ? std::string() : contents(target);
        EXPECT_NE(found(), "one") << path;
        EXPECT_NE(found(), notFound) << path;
        EXPECT_NE(update("two"), errSecSuccess) << path;
        EXPECT_NE(add("two"), errSecSuccess) << path;
        EXPECT_TRUE(fs::is_directory(target) || contents(target) == before) << path;
        fs::remove(path);
        fs::rename(target, path);
    }
    EXPECT_EQ(found(), "one");
}

TEST_F(EmbeddedStore, aReaderFindsTheOldOrTheNewItemWhole)
{
    const std::string old(50'000, 'o');
    const std::string fresh(90'000, 'n');
    ASSERT_EQ(add(old), errSecSuccess);
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        for (int round = 0; round < 40; ++round) {
            EXPECT_EQ(update(round % 2 == 0 ? fresh : old), errSecSuccess);
        }
        isDone = true;
    });
    do {
        const auto data = found();
        EXPECT_TRUE(data == old || data == fresh) << data.substr(0, 40);
    } while (!isDone);
    writer.join();
    EXPECT_EQ(filesIn(home.data()).size(), 1U) << "a temporary file stayed behind";
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
