#pragma once

#include "platform/credentials/Status.h"
#include "platform/crypto/SecretMemory.h"

#include <optional>
#include <string>
#include <tuple>

namespace MirrowvaleAuthenticator {

/// Identifies a generic-password item.
struct ItemName {
    std::string service;
    std::string account;

    friend bool operator==(const ItemName&, const ItemName&) = default;
    friend bool operator<(const ItemName& one, const ItemName& other)
    {
        return std::tie(one.service, one.account) < std::tie(other.service, other.account);
    }
};

/// How far a search goes before it answers that there is no such item.
enum class Search {
    quiet, ///< asks the user nothing, and returns no data
    usual, ///< asks to unlock what it finds, and the place where new items are made
    thorough, ///< the item is known to exist: asks to unlock every place that may hold it
};

/// What a search hands back: the item's data, or nothing.
using SecResult = std::optional<SecretString>;

/// A store of generic-password items. None of its operations replaces data that this process has neither read
/// nor written.
class CredentialStore {
public:
    virtual ~CredentialStore() = default;

    /// Reads an item's data.
    /// @param result  nothing; the data after a success, but for an item without any and a quiet search
    /// @returns `errSecItemNotFound` where there is none; `errSecInteractionNotAllowed` where a locked
    ///          place may hold it; or the status of what went wrong
    virtual OSStatus read(const ItemName& name, Search search, SecResult& result) noexcept = 0;

    /// Replaces an item's data.
    /// @returns `errSecItemNotFound` where there is none; `errSecInvalidItemRef` where it holds what this
    ///          process has neither read nor written; or the status of what went wrong
    virtual OSStatus update(const ItemName& name, const SecretString& data) noexcept = 0;

    /// Makes an item.
    /// @returns `errSecDuplicateItem` where it exists already, or the status of what went wrong
    virtual OSStatus add(const ItemName& name, const SecretString& data) noexcept = 0;

    /// Removes an item of a reserve; in any other store it is only ever replaced.
    /// @returns as `update`; `errSecParam` where this is no reserve
    virtual OSStatus remove(const ItemName& /*name*/) noexcept { return errSecParam; }

    /// The store on this device for what could not be saved in this one; null where there is none.
    virtual CredentialStore* reserve() noexcept { return nullptr; }
};

} // namespace MirrowvaleAuthenticator
