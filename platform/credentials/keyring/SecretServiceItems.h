#pragma once

#include "platform/credentials/CredentialStore.h"
#include "platform/credentials/keyring/SecretServiceOperation.h"

#include <optional>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The items of one name in the keyring, and the collections that may hold them, during one operation. What
/// fails ends the operation with a `StatusError`; a prompt that the user dismisses with `errSecUserCanceled`.
class SecretServiceItems {
public:
    SecretServiceItems(SecretServiceOperation& operation, const ItemName& name);

    /// The item, locked or not, or nothing where no search finds it. Of several under the same name (in
    /// several collections, say) it is the one changed last; among those, one that is open.
    Owned<SecretItem> find() const;

    /// Whether a collection may hold the item, though no search finds it.
    bool mayBeHidden(Search search) const { return !lockedCollections(search).empty(); }

    /// The item, or nothing where an open keyring has none. What is locked asks to be unlocked.
    Owned<SecretItem> findUnlocked(Search search) const;

    /// The item's data, or nothing where it is locked (again).
    std::optional<SecretString> dataOf(SecretItem* item) const;

    /// Replaces the item's data.
    void replace(SecretItem* item, const SecretString& data) const;

    /// Makes an item in the default collection, which is made where there is none. Replaces none.
    /// @returns false where there is an item by now
    bool create(const SecretString& data) const;

private:
    void unlock(gpointer itemOrCollection) const;
    Owned<SecretCollection> defaultCollection() const;
    std::vector<Owned<SecretCollection>> lockedCollections(Search search) const;
    bool setData(SecretItem* item, const SecretString& data) const;
    bool createIn(SecretCollection* collection, const SecretString& data) const;
    void makeDefaultCollection() const;
    void requireStored(SecretItem* item, const SecretString& data) const;

    SecretServiceOperation& operation_;
    std::string label_;
    Owned<GHashTable> attributes_;
};

} // namespace MirrowvaleAuthenticator
