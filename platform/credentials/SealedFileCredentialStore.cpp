#include "platform/credentials/SealedFileCredentialStore.h"

#include "platform/credentials/FileName.h"
#include "platform/crypto/RandomBytes.h"

#include <system_error>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

constexpr auto deviceKeyName = "device.key";

} // namespace

/// Where an item lies, and what its box is bound to.
struct SealedFileCredentialStore::Item {
    explicit Item(const ItemName& name)
        : context(fileNamePart(name.service) + "_" + fileNamePart(name.account))
    {
    }

    std::string context;
    std::string fileName = context + ".sealed";
    std::string removalName = fileName + ".removed";
};

SealedFileCredentialStore::SealedFileCredentialStore(std::filesystem::path dataFolder,
                                                     std::filesystem::path stateFolder)
    : dataFolder_(std::move(dataFolder)), stateFolder_(std::move(stateFolder))
{
}

OSStatus SealedFileCredentialStore::read(const ItemName& name, Search search, SecResult& result) noexcept
{
    return statusOf([&] {
        const Item item(name);
        if (search == Search::quiet) {
            return visit(item, opens);
        }
        return visit(item, [&](SealingKey key, std::string_view context, SecretString box) {
            const std::string tag(tagOf(box));
            result = unseal(key, context, std::move(box));
            if (result) {
                knownBoxes_.insert(tag);
            }
            return result.has_value();
        });
    });
}

OSStatus SealedFileCredentialStore::update(const ItemName& name, const SecretString& data) noexcept
{
    return statusOf([&] {
        const Item item(name);
        const auto status = checkIsKnown(item);
        if (status == errSecDecode) {
            PrivateFolder::openOrCreate(dataFolder_).setAside(item.fileName);
            create(item, data);
            return errSecSuccess;
        }
        if (status == errSecSuccess) {
            replace(item, data);
        }
        return status;
    });
}

OSStatus SealedFileCredentialStore::add(const ItemName& name, const SecretString& data) noexcept
{
    return statusOf([&] {
        const Item item(name);
        if (visit(item, opens) != errSecItemNotFound) {
            return errSecDuplicateItem;
        }
        create(item, data);
        return errSecSuccess;
    });
}

OSStatus SealedFileCredentialStore::remove(const ItemName& name) noexcept
{
    return statusOf([&] {
        const Item item(name);
        const auto status = checkIsKnown(item);
        if (status != errSecSuccess && status != errSecItemNotFound) {
            return status;
        }
        // Also one that could not be removed before.
        const auto folder = PrivateFolder::open(dataFolder_);
        if (const auto box = folder ? folder->read(item.fileName) : std::nullopt) {
            try {
                folder->remove(item.fileName);
            } catch (const std::system_error&) {
                PrivateFolder::openOrCreate(stateFolder_).write(item.removalName, tagOf(*box));
            }
        }
        return status;
    });
}

template <typename Open>
OSStatus SealedFileCredentialStore::visit(const Item& item, Open open) const
{
    const auto folder = PrivateFolder::open(dataFolder_);
    auto box = folder ? folder->read(item.fileName) : std::nullopt;
    if (!box || isRemoved(item, *box)) {
        return errSecItemNotFound;
    }
    const auto key = deviceKey();
    return key && open(SealingKey(*key), item.context, std::move(*box)) ? errSecSuccess : errSecDecode;
}

/// The status that `read` would give, but for an item that opens and was never read or written here.
OSStatus SealedFileCredentialStore::checkIsKnown(const Item& item) const
{
    bool isKnown = false;
    const auto status = visit(item, [&](SealingKey key, std::string_view context, const SecretString& box) {
        isKnown = knownBoxes_.contains(tagOf(box));
        return opens(key, context, box);
    });
    return status == errSecSuccess && !isKnown ? errSecInvalidItemRef : status;
}

/// Writes an item where there is none that opens. Everything that it rests on must be flushed before.
void SealedFileCredentialStore::create(const Item& item, const SecretString& data)
{
    const auto key = flushedDeviceKey();
    write(PrivateFolder::create(dataFolder_), item, SealingKey(key), data);
}

/// Writes an item in the place of one that opened: key and folders have been flushed since that one was made.
void SealedFileCredentialStore::replace(const Item& item, const SecretString& data)
{
    const auto key = deviceKey();
    const auto folder = PrivateFolder::open(dataFolder_);
    if (!key || !folder) {
        throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory));
    }
    write(*folder, item, SealingKey(*key), data);
}

void SealedFileCredentialStore::write(const PrivateFolder& folder, const Item& item, SealingKey key,
                                      const SecretString& data)
{
    const auto box = seal(key, item.context, data);
    knownBoxes_.emplace(tagOf(box)); // before: a write that fails may have reached the disk
    folder.write(item.fileName, box);
}

/// Whether the file counts as removed: where it could not be, the state folder has the tag of its box.
bool SealedFileCredentialStore::isRemoved(const Item& item, std::string_view box) const
{
    const auto folder = PrivateFolder::open(stateFolder_);
    const auto tag = folder ? folder->read(item.removalName) : std::nullopt;
    return tag == tagOf(box);
}

/// The key, or nothing where there is none of the right size.
std::optional<SecretBytes> SealedFileCredentialStore::deviceKey() const
{
    const auto folder = PrivateFolder::open(stateFolder_);
    const auto key = folder ? folder->read(deviceKeyName) : std::nullopt;
    if (!key || key->size() != sealingKeySize) {
        return std::nullopt;
    }
    return SecretBytes(key->begin(), key->end());
}

/// The key, made where there is none, and in either case flushed.
SecretBytes SealedFileCredentialStore::flushedDeviceKey() const
{
    const auto folder = PrivateFolder::create(stateFolder_);
    if (auto key = deviceKey()) {
        folder.flush(); // the process that made it may have ended before it did
        return std::move(*key);
    }
    folder.setAside(deviceKeyName); // damaged, but perhaps of use in a repair
    SecretBytes key(sealingKeySize);
    fillWithRandomBytes(key);
    folder.write(deviceKeyName, {reinterpret_cast<const char*>(key.data()), key.size()});
    return key;
}

} // namespace MirrowvaleAuthenticator
