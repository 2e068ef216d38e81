#include "platform/EmbeddedCredentialStore.h"

#include "platform/Errno.h"
#include "platform/RandomBytes.h"
#include "platform/SealedBox.h"

#include <new>
#include <system_error>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

constexpr auto deviceKeyName = "device.key";

const SecretString* text(const SecDictionary& entries, std::string_view key)
{
    const auto found = entries.find(key);
    return found == entries.end() ? nullptr : std::get_if<SecretString>(&found->second);
}

/// A file name for any text: everything but ASCII letters, digits, "." and "-" becomes a percent-escape.
std::string fileNamePart(std::string_view name)
{
    constexpr std::string_view hexadecimalDigits = "0123456789ABCDEF";
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-";
    std::string result;
    for (const char character : name) {
        if (plain.find(character) != std::string_view::npos) {
            result += character;
        } else {
            const auto byte = static_cast<unsigned char>(character);
            result += {'%', hexadecimalDigits[byte >> 4], hexadecimalDigits[byte & 0x0f]};
        }
    }
    return result;
}

/// Runs an operation; whatever it throws comes back as a status.
template <typename Operation>
OSStatus statusOf(Operation operation)
{
    try {
        return operation();
    } catch (const std::system_error& error) {
        return statusForErrno(error.code().value());
    } catch (const std::bad_alloc&) {
        return errSecAllocate;
    }
}

} // namespace

/// Where an item lies, and what its box is bound to.
struct EmbeddedCredentialStore::Item {
    std::string fileName;
    std::string context;

    static std::optional<Item> named(const SecDictionary& query)
    {
        const auto* itemClass = text(query, kSecClass);
        const auto* service = text(query, kSecAttrService);
        const auto* account = text(query, kSecAttrAccount);
        if (itemClass == nullptr || *itemClass != kSecClassGenericPassword || service == nullptr
            || account == nullptr) {
            return std::nullopt;
        }
        const auto name = fileNamePart(*service) + "_" + fileNamePart(*account);
        return Item{name + ".sealed", name};
    }
};

EmbeddedCredentialStore::EmbeddedCredentialStore(std::filesystem::path data, std::filesystem::path state)
    : dataFolder(std::move(data)), stateFolder(std::move(state))
{
}

OSStatus EmbeddedCredentialStore::copyMatching(const SecDictionary& query, SecResult& result)
{
    return statusOf([&] {
        result.emplace<std::monostate>();
        const auto item = Item::named(query);
        if (!item) {
            return errSecParam;
        }
        SecretString data;
        const auto status = read(*item, data);
        if (status == errSecSuccess) {
            result = std::move(data);
        }
        return status;
    });
}

OSStatus EmbeddedCredentialStore::update(const SecDictionary& query, const SecDictionary& attributes)
{
    return statusOf([&] {
        const auto item = Item::named(query);
        if (!item || text(attributes, kSecValueData) == nullptr) {
            return errSecParam;
        }
        SecretString present;
        const auto status = read(*item, present);
        if (status == errSecDecode) {
            PrivateFolder::openOrCreate(dataFolder).setAside(item->fileName);
            create(*item, attributes);
            return errSecSuccess;
        }
        if (status == errSecSuccess) {
            replace(*item, attributes);
        }
        return status;
    });
}

OSStatus EmbeddedCredentialStore::add(const SecDictionary& attributes)
{
    return statusOf([&] {
        const auto item = Item::named(attributes);
        if (!item || text(attributes, kSecValueData) == nullptr) {
            return errSecParam;
        }
        SecretString present;
        const auto status = read(*item, present);
        if (status == errSecItemNotFound) {
            create(*item, attributes);
            return errSecSuccess;
        }
        return status == errSecSuccess || status == errSecDecode ? errSecDuplicateItem : status;
    });
}

OSStatus EmbeddedCredentialStore::read(const Item& item, SecretString& data) const
{
    const auto folder = PrivateFolder::open(dataFolder);
    const auto box = folder ? folder->read(item.fileName) : std::nullopt;
    if (!box) {
        return errSecItemNotFound;
    }
    const auto key = deviceKey();
    auto opened = key ? unseal(SealingKey(*key), item.context, *box) : std::nullopt;
    if (!opened) {
        return errSecDecode;
    }
    data = std::move(*opened);
    return errSecSuccess;
}

/// Writes an item where there is none that opens. Everything that it rests on must be safe on disk before.
void EmbeddedCredentialStore::create(const Item& item, const SecDictionary& attributes) const
{
    const auto key = safeDeviceKey();
    const auto folder = PrivateFolder::create(dataFolder);
    folder.write(item.fileName, seal(SealingKey(key), item.context, *text(attributes, kSecValueData)));
}

/// Writes an item in the place of one that opened: key and folders are safe on disk since that one was made.
void EmbeddedCredentialStore::replace(const Item& item, const SecDictionary& attributes) const
{
    const auto key = deviceKey();
    const auto folder = PrivateFolder::open(dataFolder);
    if (!key || !folder) {
        throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory));
    }
    folder->write(item.fileName, seal(SealingKey(*key), item.context, *text(attributes, kSecValueData)));
}

/// The key, or nothing where there is none of the right size.
std::optional<SecretBytes> EmbeddedCredentialStore::deviceKey() const
{
    const auto folder = PrivateFolder::open(stateFolder);
    const auto key = folder ? folder->read(deviceKeyName) : std::nullopt;
    if (!key || key->size() != sealingKeySize) {
        return std::nullopt;
    }
    return SecretBytes(key->begin(), key->end());
}

/// The key, made where there is none, and in either case safe on disk.
SecretBytes EmbeddedCredentialStore::safeDeviceKey() const
{
    const auto folder = PrivateFolder::create(stateFolder);
    if (auto key = deviceKey()) {
        folder.flush(); // whoever made it may not have lived to
        return std::move(*key);
    }
    folder.setAside(deviceKeyName); // damaged, yet perhaps of use to whoever repairs it
    SecretBytes key(sealingKeySize);
    fillWithRandomBytes(key);
    folder.write(deviceKeyName, {reinterpret_cast<const char*>(key.data()), key.size()});
    return key;
}

} // namespace MirrowvaleAuthenticator
