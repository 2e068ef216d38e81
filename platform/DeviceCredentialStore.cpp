#include "platform/DeviceCredentialStore.h"

#include "platform/ItemName.h"
#include "platform/PrivateFolder.h"
#include "platform/Status.h"

#include <string>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::string_view keyringMark = "keyring\n";
constexpr std::string_view sealedFilesMark = "sealed files\n";

/// A search that asks whether the item exists: without its data, so that a locked keyring need not ask back.
SecDictionary nameOnly(const SecDictionary& entries)
{
    SecDictionary query;
    for (const auto key : {kSecClass, kSecAttrService, kSecAttrAccount}) {
        query.insert(*entries.find(key));
    }
    return query;
}

std::string markName(std::string_view service)
{
    return fileNamePart(service) + ".location";
}

} // namespace

DeviceCredentialStore::DeviceCredentialStore(CredentialStore& keyringStore, CredentialStore& sealedFileStore,
                                             std::filesystem::path state)
    : keyring(keyringStore), sealedFiles(sealedFileStore), stateFolder(std::move(state))
{
}

OSStatus DeviceCredentialStore::copyMatching(const SecDictionary& query, SecResult& result)
{
    return statusOf([&] {
        const auto location = locate(query);
        return location.isSettled ? store(location.place).copyMatching(query, result) : errSecItemNotFound;
    });
}

OSStatus DeviceCredentialStore::update(const SecDictionary& query, const SecDictionary& attributes)
{
    return statusOf([&] {
        const auto location = locate(query);
        return location.isSettled ? store(location.place).update(query, attributes) : errSecItemNotFound;
    });
}

OSStatus DeviceCredentialStore::add(const SecDictionary& attributes)
{
    return statusOf([&] {
        const auto location = locate(attributes);
        return location.isSettled ? store(location.place).add(attributes)
                                  : create(location.place, attributes);
    });
}

DeviceCredentialStore::Location DeviceCredentialStore::locate(const SecDictionary& entries) const
{
    const auto name = requireName(entries);
    const auto folder = PrivateFolder::open(stateFolder);
    if (const auto mark = folder ? folder->read(markName(name.service)) : std::nullopt) {
        if (*mark != keyringMark && *mark != sealedFilesMark) {
            throw StatusError{errSecDecode};
        }
        return {*mark == keyringMark ? Place::keyring : Place::sealedFiles, true};
    }
    // No mark: nothing was created here yet, or the state folder is gone.
    const auto query = nameOnly(entries);
    SecResult ignored;
    if (sealedFiles.copyMatching(query, ignored) != errSecItemNotFound) {
        return {Place::sealedFiles, true};
    }
    switch (const auto status = keyring.copyMatching(query, ignored)) {
    case errSecSuccess:
        markKeyring(name.service);
        return {Place::keyring, true};
    case errSecItemNotFound:
        return {Place::keyring, false};
    case errSecNotAvailable:
        return {Place::sealedFiles, false};
    default:
        throw StatusError{status};
    }
}

/// Renews a lost mark. Where that fails, the item is as findable as it was.
void DeviceCredentialStore::markKeyring(std::string_view service) const
{
    statusOf([&] {
        PrivateFolder::openOrCreate(stateFolder).write(markName(service), keyringMark);
        return errSecSuccess;
    });
}

OSStatus DeviceCredentialStore::create(Place place, const SecDictionary& attributes) const
{
    // First the mark: an item that nothing points to would be lost on a day without its keyring.
    const auto mark = markName(requireName(attributes).service);
    const auto folder = PrivateFolder::create(stateFolder);
    folder.write(mark, place == Place::keyring ? keyringMark : sealedFilesMark);
    const auto status = store(place).add(attributes);
    SecResult ignored;
    if (status != errSecSuccess
        && store(place).copyMatching(nameOnly(attributes), ignored) == errSecItemNotFound) {
        folder.remove(mark);
    }
    return status;
}

CredentialStore& DeviceCredentialStore::store(Place place) const
{
    return place == Place::keyring ? keyring : sealedFiles;
}

} // namespace MirrowvaleAuthenticator
