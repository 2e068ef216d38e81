#include "platform/credentials/DeviceCredentialStore.h"

#include "platform/credentials/ItemName.h"
#include "platform/credentials/Status.h"
#include "platform/system/PrivateFolder.h"

#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::string_view keyringMark = "keyring\n";
constexpr std::string_view sealedFilesMark = "sealed files\n";

/// A search for the item by its name, which by itself asks for no data: a locked keyring then shows no
/// prompt.
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

bool isReserve(const SecDictionary& entries)
{
    return entries.contains(kSecUseReserve);
}

} // namespace

DeviceCredentialStore::DeviceCredentialStore(CredentialStore& keyring, CredentialStore& sealedFiles,
                                             std::filesystem::path stateFolder)
    : keyring_(keyring), sealedFiles_(sealedFiles), stateFolder_(std::move(stateFolder))
{
}

OSStatus DeviceCredentialStore::copyMatching(const SecDictionary& query, SecResult& result) noexcept
{
    return statusOf([&] {
        result.emplace<std::monostate>();
        auto* known = place(query);
        if (isReserve(query)) {
            return known == &sealedFiles_ ? errSecItemNotFound : sealedFiles_.copyMatching(query, result);
        }
        return known == nullptr ? search(query, result) : known->copyMatching(query, result);
    });
}

OSStatus DeviceCredentialStore::update(const SecDictionary& query, const SecDictionary& attributes) noexcept
{
    return statusOf([&] { return requirePlace(query).update(query, attributes); });
}

OSStatus DeviceCredentialStore::add(const SecDictionary& attributes) noexcept
{
    return statusOf([&] {
        auto& chosen = requirePlace(attributes);
        const auto status = chosen.add(attributes);
        if (status == errSecSuccess && &chosen == &keyring_) {
            remember(attributes, keyringMark);
        }
        return status;
    });
}

OSStatus DeviceCredentialStore::remove(const SecDictionary& query) noexcept
{
    return statusOf([&] { return isReserve(query) ? requirePlace(query).remove(query) : errSecParam; });
}

/// Where the items of the service live, if that is known already.
CredentialStore* DeviceCredentialStore::place(const SecDictionary& entries) const
{
    const auto found = places_.find(requireName(entries).service);
    return found == places_.end() ? nullptr : found->second;
}

/// The store that the entries mean.
/// @throws StatusError  why it cannot be known, or that there is no reserve
CredentialStore& DeviceCredentialStore::requirePlace(const SecDictionary& entries)
{
    if (isReserve(entries)) {
        if (place(entries) == &sealedFiles_) {
            throw StatusError{errSecNotAvailable};
        }
        return sealedFiles_;
    }
    if (place(entries) == nullptr) {
        SecResult ignored;
        const auto status = search(nameOnly(entries), ignored);
        if (place(entries) == nullptr) {
            throw StatusError{status};
        }
    }
    return *place(entries);
}

/// Searches both places, and settles in which of them the items of the service live.
OSStatus DeviceCredentialStore::search(const SecDictionary& query, SecResult& result)
{
    const std::string service(requireName(query).service);
    const auto mark = rememberedMark(service);
    SecResult found;
    const auto status = askKeyring(query, mark, found);
    switch (status) {
    case errSecSuccess:
        places_[service] = &keyring_;
        remember(query, keyringMark);
        result = std::move(found);
        return status;
    case errSecItemNotFound: {
        const auto sealedStatus = sealedFiles_.copyMatching(query, result);
        if (sealedStatus == errSecItemNotFound) {
            places_[service] = &keyring_;
        } else if (sealedStatus == errSecSuccess || sealedStatus == errSecDecode) {
            places_[service] = &sealedFiles_;
            if (mark != keyringMark) { // another keyring than this one may have the item
                remember(query, sealedFilesMark);
            }
        }
        return sealedStatus;
    }
    case errSecUserCanceled:
    case errSecInteractionNotAllowed:
        return status;
    default:
        if (mark == keyringMark) {
            return status;
        }
        places_[service] = &sealedFiles_;
        return sealedFiles_.copyMatching(query, result);
    }
}

/// What the keyring says when it is asked for the item and its data.
OSStatus DeviceCredentialStore::askKeyring(const SecDictionary& query, std::string_view mark,
                                           SecResult& result) const
{
    auto question = nameOnly(query);
    if (mark == sealedFilesMark && sealedFiles_.copyMatching(question, result) != errSecItemNotFound) {
        // The items were found here when the keyring was open: what it locks now is not unlocked only to
        // search it.
        const auto status = keyring_.copyMatching(question, result);
        if (status != errSecSuccess) {
            return status == errSecInteractionNotAllowed ? errSecItemNotFound : status;
        }
    }
    question.emplace(kSecReturnData, true);
    if (mark == keyringMark) {
        question.emplace(kSecMatchKnownItem, true);
    }
    return keyring_.copyMatching(question, result);
}

/// What stands in the mark's file: one of the two marks, or a text that is neither; empty where it cannot be
/// read.
std::string DeviceCredentialStore::rememberedMark(std::string_view service) const
{
    std::string mark;
    statusOf([&] {
        const auto folder = PrivateFolder::open(stateFolder_);
        if (const auto bytes = folder ? folder->read(markName(service)) : std::nullopt) {
            mark = *bytes;
        }
        return errSecSuccess;
    });
    return mark;
}

/// Writes the mark. A failure is ignored: the next start goes by the mark before.
void DeviceCredentialStore::remember(const SecDictionary& entries, std::string_view mark) const
{
    const auto service = requireName(entries).service;
    if (rememberedMark(service) == mark) {
        return;
    }
    statusOf([&] {
        PrivateFolder::openOrCreate(stateFolder_).write(markName(service), mark);
        return errSecSuccess;
    });
}

} // namespace MirrowvaleAuthenticator
