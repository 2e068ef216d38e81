#pragma once

#include "core/AuthToken.h"
#include "storage/KeychainTokenStore.h"
#include "storage/ObservableObject.h"
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

    /// Replaces `tokens` by the stored list and the reserve's tokens, merged and sorted by issuer in the
    /// user's locale. Tokens of the reserve are then saved in the list's own place. Where that cannot be
    /// read, only the reserve's are listed, if any.
    void load();

    /// Writes `tokens` to the credential store. The reserve first gets those that are not stored there yet,
    /// and is cleared after a success. As long as the stored list could not be reached, only the reserve is
    /// written, and `lastError` stays. Where either place holds what this run has not read, that is merged
    /// into `tokens` before it is replaced; unreadable data is set aside.
    void persist();

    /// Calls `persist()` once more where the last one failed, unless the user has refused to unlock the
    /// keyring. To be called when the window is hidden or closed, or the program ends: the cause may be gone
    /// by then.
    void persistAgain();

    /// Adds one to the counter of the listed token with `token`'s id and persists. A token that is not
    /// listed, or whose counter is at its largest, stays as it is, and nothing is written.
    void advanceCounter(const AuthToken& token);

private:
    using State = StoredList::State;

    bool saveReserve();
    void saveItem();
    void mergeItem();
    void mergeReserve();
    void merge(const std::vector<AuthToken>& others);
    std::vector<AuthToken> unsaved() const;
    void noteSaved(const std::vector<AuthToken>& list);

    KeychainTokenStore storage_;
    TokenReserve reserve_;
    State itemState_ = State::unreached; ///< of the item in its own place, as this run knows it
    State reserveState_ = State::unreached;
    /// `id` and counter of each token in the item, as far as it was read: nothing else of a token ever
    /// changes.
    std::vector<std::pair<UUID, std::uint64_t>> saved_;
    bool isSaveDue_ = false;
};

} // namespace MirrowvaleAuthenticator
