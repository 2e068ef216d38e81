#pragma once

#include "core/AuthToken.h"
#include "platform/system/ObservableObject.h"
#include "storage/KeychainTokenStore.h"
#include "storage/TokenReserve.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The one token list of the application: screens read `tokens`, change it, then call `persist()`.
class TokenStore : public ObservableObject {
public:
    /// Loads the stored list at once; a failure shows in `lastError`.
    TokenStore();

    Published<std::vector<AuthToken>> tokens{*this}; ///< in display order
    /// The message of the last load or save, if it failed.
    Published<std::optional<std::string>> lastError{*this};

    /// Replaces `tokens` by the stored list, sorted by issuer in the user's locale; empty after a failure.
    /// What the reserve keeps becomes part of a list that could be loaded, and is saved along with it.
    void load();

    /// Writes `tokens` to the credential store. After a failed load, an item that is still no list is set
    /// aside first; one that could not even be reached is spared, and `lastError` stays, unless the reserve
    /// fails as well and the item can be read by now: then both are united there, and later saves go there
    /// first. A list that another process has changed meanwhile is united with `tokens`, which is then
    /// assigned, too. Whatever fails, the reserve keeps the tokens that are not saved.
    void persist();

    /// Adds one to the counter of the listed token with `token`'s id and persists. A token that is not
    /// listed, or whose counter is at its largest, stays as it is, and nothing is written.
    void advanceCounter(const AuthToken& token);

private:
    /// What a save has to do with the stored item.
    enum class Item {
        known, ///< its tokens are listed, or it holds none: it may be replaced
        unreadable, ///< it is no list: to be set aside before it is replaced
        unreached, ///< to be spared before a load has succeeded, as long as there is a reserve
    };

    std::vector<AuthToken> loadItem();
    void saveItem();
    void uniteWithItem();
    std::optional<std::string> saveUnseen();
    std::vector<AuthToken> unsaved() const;
    void noteSaved(const std::vector<AuthToken>& list);

    KeychainTokenStore storage_;
    TokenReserve reserve_;
    Item item_ = Item::known;
    /// What the item held when it could be read after a load had failed: no part of the list, but to be saved
    /// beside it.
    std::optional<std::vector<AuthToken>> unseen_;
    /// `id` and counter of each token in the item: nothing else of a token ever changes.
    std::vector<std::pair<decltype(UUID::bytes), std::uint64_t>> saved_;
};

} // namespace MirrowvaleAuthenticator
