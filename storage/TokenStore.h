#pragma once

#include "core/AuthToken.h"
#include "storage/KeychainTokenStore.h"
#include "storage/ObservableObject.h"
#include "storage/TokenReserve.h"

#include <cstdint>
#include <optional>
#include <set>
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

    /// Replaces `tokens` by the stored list, sorted by issuer in the user's locale, united with what the
    /// reserve keeps, which is then saved along with it. After a failure it is what the reserve keeps;
    /// nothing, where it keeps nothing.
    void load();

    /// Writes `tokens` to the credential store; before, the reserve gets what is not stored there yet, and
    /// after a success it keeps nothing. As long as the stored list could not be reached, the reserve is all
    /// that is written, and `lastError` stays. What either place turns out to hold beside, since it could not
    /// be read before or another process has changed it, becomes part of `tokens` first; what is no list is
    /// set aside.
    void persist();

    /// Saves once more where the last save failed, unless the user has refused to unlock what it takes:
    /// whatever was in its way may be gone by the time that the window goes.
    void persistAgain();

    /// Adds one to the counter of the listed token with `token`'s id and persists. A token that is not
    /// listed, or whose counter is at its largest, stays as it is, and nothing is written.
    void advanceCounter(const AuthToken& token);

private:
    using State = StoredList::State;

    bool keep();
    void keepAll();
    void saveItem();
    void uniteWithItem();
    void uniteWithReserve();
    void unite(const std::vector<AuthToken>& others);
    std::vector<AuthToken> unsaved() const;
    void noteSaved(const std::vector<AuthToken>& list);

    KeychainTokenStore storage_;
    TokenReserve reserve_;
    State item_ = State::unreached; ///< what this run knows of the stored item
    State kept_ = State::unreached; ///< and of the reserve
    /// `id` and counter of each token in the item, as far as it was read: nothing else of a token ever
    /// changes.
    std::set<std::pair<decltype(UUID::bytes), std::uint64_t>> saved_;
    bool isSaveDue_ = false;
};

} // namespace MirrowvaleAuthenticator
