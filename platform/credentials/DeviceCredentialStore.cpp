#include "platform/credentials/DeviceCredentialStore.h"

#include "platform/credentials/FileName.h"
#include "platform/system/PrivateFolder.h"

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::string_view recordOfKeyring = "keyring\n";
constexpr std::string_view recordOfSealedFiles = "sealed files\n";

std::string recordName(const ItemName& name)
{
    return fileNamePart(name.service) + ".location";
}

} // namespace

OSStatus DeviceCredentialStore::read(const ItemName& name, Search search, SecResult& result) noexcept
{
    return statusOf(
        [&] { return place_ == nullptr ? find(name, result) : place_->read(name, search, result); });
}

OSStatus DeviceCredentialStore::update(const ItemName& name, const SecretString& data) noexcept
{
    return statusOf([&] { return requirePlace(name).update(name, data); });
}

OSStatus DeviceCredentialStore::add(const ItemName& name, const SecretString& data) noexcept
{
    return statusOf([&] {
        const auto status = requirePlace(name).add(name, data);
        if (status == errSecSuccess && place_ == &keyring_) {
            record(name, recordedPlace(name));
        }
        return status;
    });
}

CredentialStore* DeviceCredentialStore::reserve() noexcept
{
    return place_ == &sealedFiles_ ? nullptr : &sealedFiles_;
}

/// The store in which the items live.
/// @throws StatusError  why it cannot be known
CredentialStore& DeviceCredentialStore::requirePlace(const ItemName& name)
{
    if (place_ == nullptr) {
        SecResult ignored;
        const auto status = find(name, ignored);
        if (place_ == nullptr) {
            throw StatusError{status};
        }
    }
    return *place_;
}

/// Searches both places, and settles in which of them the items live.
OSStatus DeviceCredentialStore::find(const ItemName& name, SecResult& result)
{
    const auto* recorded = recordedPlace(name);
    const auto status = askKeyring(name, recorded, result);
    switch (status) {
    case errSecSuccess:
        place_ = &keyring_;
        record(name, recorded);
        return status;
    case errSecItemNotFound:
        return askSealedFiles(name, recorded, result);
    case errSecUserCanceled:
    case errSecInteractionNotAllowed:
        return status;
    default:
        if (recorded == &keyring_) {
            return status;
        }
        place_ = &sealedFiles_;
        return sealedFiles_.read(name, Search::usual, result);
    }
}

OSStatus DeviceCredentialStore::askKeyring(const ItemName& name, const CredentialStore* recorded,
                                           SecResult& result) const
{
    if (recorded == &sealedFiles_ && sealedFiles_.read(name, Search::quiet, result) != errSecItemNotFound) {
        // The items were found there when the keyring was open: what it locks now is not unlocked only to
        // search it.
        const auto status = keyring_.read(name, Search::quiet, result);
        if (status != errSecSuccess) {
            return status == errSecInteractionNotAllowed ? errSecItemNotFound : status;
        }
    }
    return keyring_.read(name, recorded == &keyring_ ? Search::thorough : Search::usual, result);
}

/// Asks the sealed files for what an open keyring does not have.
OSStatus DeviceCredentialStore::askSealedFiles(const ItemName& name, const CredentialStore* recorded,
                                               SecResult& result)
{
    const auto status = sealedFiles_.read(name, Search::usual, result);
    if (status == errSecItemNotFound) {
        place_ = &keyring_;
    } else if (status == errSecSuccess || status == errSecDecode) {
        place_ = &sealedFiles_;
        if (recorded != &keyring_) { // else another keyring than this one may have the item
            record(name, recorded);
        }
    }
    return status;
}

/// What the location record says; null where it cannot be read, or is damaged.
const CredentialStore* DeviceCredentialStore::recordedPlace(const ItemName& name) const
{
    const CredentialStore* place = nullptr;
    statusOf([&] {
        const auto folder = PrivateFolder::open(stateFolder_);
        const auto text = folder ? folder->read(recordName(name)) : std::nullopt;
        place = text == recordOfKeyring ? &keyring_ : text == recordOfSealedFiles ? &sealedFiles_ : nullptr;
        return errSecSuccess;
    });
    return place;
}

/// Writes where the items live, unless that was recorded before. A failure is ignored: the next start goes
/// by the record before.
void DeviceCredentialStore::record(const ItemName& name, const CredentialStore* before) const
{
    if (place_ == before) {
        return;
    }
    statusOf([&] {
        PrivateFolder::openOrCreate(stateFolder_)
            .write(recordName(name), place_ == &keyring_ ? recordOfKeyring : recordOfSealedFiles);
        return errSecSuccess;
    });
}

} // namespace MirrowvaleAuthenticator
