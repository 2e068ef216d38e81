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
    return statusOf([&] {
        return place_ == Place::unknown ? find(name, result) : requirePlace(name).read(name, search, result);
    });
}

OSStatus DeviceCredentialStore::update(const ItemName& name, const SecretString& data) noexcept
{
    return statusOf([&] { return requirePlace(name).update(name, data); });
}

OSStatus DeviceCredentialStore::add(const ItemName& name, const SecretString& data) noexcept
{
    return statusOf([&] {
        const auto status = requirePlace(name).add(name, data);
        if (status == errSecSuccess && place_ == Place::keyring) {
            record(name, Place::keyring, recordedPlace(name));
        }
        return status;
    });
}

CredentialStore* DeviceCredentialStore::reserve() noexcept
{
    return place_ == Place::sealedFiles ? nullptr : &sealedFiles_;
}

/// The store in which the items live.
/// @throws StatusError  why it cannot be known
CredentialStore& DeviceCredentialStore::requirePlace(const ItemName& name)
{
    if (place_ == Place::unknown) {
        SecResult ignored;
        const auto status = find(name, ignored);
        if (place_ == Place::unknown) {
            throw StatusError{status};
        }
    }
    return place_ == Place::keyring ? keyring_ : sealedFiles_;
}

/// Searches both places, and settles in which of them the items live.
OSStatus DeviceCredentialStore::find(const ItemName& name, SecResult& result)
{
    const auto recorded = recordedPlace(name);
    const auto status = askKeyring(name, recorded, result);
    switch (status) {
    case errSecSuccess:
        place_ = Place::keyring;
        record(name, place_, recorded);
        return status;
    case errSecItemNotFound: {
        const auto sealedStatus = askSealedFiles(name, result);
        if (place_ == Place::sealedFiles && recorded != Place::keyring) {
            record(name, place_, recorded); // else another keyring than this one may have the item
        }
        return sealedStatus;
    }
    case errSecUserCanceled:
    case errSecInteractionNotAllowed:
        return status;
    default:
        if (recorded == Place::keyring) {
            return status;
        }
        place_ = Place::sealedFiles;
        return sealedFiles_.read(name, Search::usual, result);
    }
}

OSStatus DeviceCredentialStore::askKeyring(const ItemName& name, Place recorded, SecResult& result) const
{
    if (recorded == Place::sealedFiles
        && sealedFiles_.read(name, Search::quiet, result) != errSecItemNotFound) {
        // The items were found there when the keyring was open: what it locks now is not unlocked only to
        // search it.
        const auto status = keyring_.read(name, Search::quiet, result);
        if (status != errSecSuccess) {
            return status == errSecInteractionNotAllowed ? errSecItemNotFound : status;
        }
    }
    return keyring_.read(name, recorded == Place::keyring ? Search::thorough : Search::usual, result);
}

/// Asks the sealed files for what an open keyring does not have.
OSStatus DeviceCredentialStore::askSealedFiles(const ItemName& name, SecResult& result)
{
    const auto status = sealedFiles_.read(name, Search::usual, result);
    if (status == errSecItemNotFound) {
        place_ = Place::keyring;
    } else if (status == errSecSuccess || status == errSecDecode) {
        place_ = Place::sealedFiles;
    }
    return status;
}

/// What the location record says: unknown where it cannot be read, or is damaged.
DeviceCredentialStore::Place DeviceCredentialStore::recordedPlace(const ItemName& name) const
{
    auto place = Place::unknown;
    statusOf([&] {
        const auto folder = PrivateFolder::open(stateFolder_);
        const auto text = folder ? folder->read(recordName(name)) : std::nullopt;
        place = text == recordOfKeyring   ? Place::keyring
            : text == recordOfSealedFiles ? Place::sealedFiles
                                          : Place::unknown;
        return errSecSuccess;
    });
    return place;
}

/// Writes the location record, where it changes. A failure is ignored: the next start goes by the record
/// before.
void DeviceCredentialStore::record(const ItemName& name, Place place, Place before) const
{
    if (place == before) {
        return;
    }
    statusOf([&] {
        PrivateFolder::openOrCreate(stateFolder_)
            .write(recordName(name), place == Place::keyring ? recordOfKeyring : recordOfSealedFiles);
        return errSecSuccess;
    });
}

} // namespace MirrowvaleAuthenticator
