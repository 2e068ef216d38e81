#include "storage/TokenStore.h"

#include "platform/text/LocalizedError.h"
#include "platform/text/Text.h"
#include "storage/KeychainTokenStoreError.h"
#include "storage/TokenMerge.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

constexpr auto service = "app.mirrowvale.authenticator.tokens";
constexpr auto account = "vault";

/// Saves in a place. Where that holds what this run has not read, both become one list first.
template <typename Save, typename Merge>
void saveMerged(StoredList::State state, Save save, Merge merge)
{
    if (state != StoredList::State::read) {
        merge();
    }
    try {
        save();
    } catch (const KeychainTokenStoreError& error) {
        const auto status = error.unexpectedStatus();
        if (status != errSecInvalidItemRef && status != errSecDuplicateItem) {
            throw;
        }
        merge();
        save();
    }
}

/// Reads a place again; unreadable data is set aside.
/// @throws KeychainTokenStoreError  where it cannot be reached, or set aside
template <typename Place>
std::vector<AuthToken> loadOrSetAside(const Place& place)
{
    auto found = place.load();
    if (found.state == StoredList::State::unreached) {
        throw KeychainTokenStoreError(found.status);
    }
    if (found.data) {
        place.setAside(*found.data); // the credential store itself does so with what does not open
    }
    return std::move(found.tokens);
}

/// Orders by issuer as the user's locale does, regardless of case; equal ones stay as they were.
void sortByIssuer(std::vector<AuthToken>& tokens)
{
    if (tokens.size() < 2) {
        return; // the locale's rules take a while to load
    }
    struct Entry {
        std::string key;
        std::size_t position;
    };
    const LocalizedCaseInsensitiveOrder order;
    std::vector<Entry> entries;
    entries.reserve(tokens.size());
    for (const auto& token : tokens) {
        entries.push_back({order.sortKey(token.issuer.empty() ? "Token" : token.issuer), entries.size()});
    }
    std::ranges::stable_sort(entries, {}, &Entry::key);

    std::vector<AuthToken> sorted;
    sorted.reserve(tokens.size());
    for (const auto& entry : entries) {
        sorted.push_back(std::move(tokens[entry.position]));
    }
    tokens = std::move(sorted);
}

} // namespace

TokenStore::TokenStore() : storage_(service, account), reserve_(service, account)
{
    load();
}

void TokenStore::load()
{
    auto found = storage_.load();
    itemState_ = found.state;
    noteSaved(found.tokens);
    const auto kept = reserve_.load();
    reserveState_ = kept.state;
    auto listed = merged(std::move(found.tokens), kept.tokens);
    try {
        sortByIssuer(listed);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): better unsorted than unseen
    }
    if (found.state != State::read) {
        lastError = std::move(found.failure);
        tokens = std::move(listed);
        return;
    }
    tokens = std::move(listed);
    lastError = std::nullopt;
    if (!kept.tokens.empty()) {
        persist(); // what lies in two places is in its own before anything else can happen to it
    }
}

void TokenStore::persist()
{
    isSaveDue_ = false;
    if (saveReserve() && itemState_ == State::unreached) {
        lastError = std::optional(*lastError);
        return;
    }
    try {
        saveItem();
        saveReserve(); // that is, clears it
        lastError = std::nullopt;
    } catch (const std::exception& error) {
        const auto* failure = dynamic_cast<const KeychainTokenStoreError*>(&error);
        const bool isRefused = failure != nullptr && failure->unexpectedStatus() == errSecUserCanceled;
        isSaveDue_ = !isRefused; // by the user, whom it would ask again
        lastError = localizedDescription(error);
    }
}

void TokenStore::persistAgain()
{
    if (isSaveDue_) {
        persist();
    }
}

/// Writes the tokens that the item lacks to the reserve. That comes first: the item's own place may wait for
/// a user, or for nothing.
/// @returns false where it cannot; the failure to show is that of the item
bool TokenStore::saveReserve()
{
    try {
        saveMerged(
            reserveState_, [this] { reserve_.save(unsaved()); }, [this] { mergeReserve(); });
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void TokenStore::saveItem()
{
    const auto itemHasGone = [this] { // and with it all that was saved
        saved_.clear();
        saveReserve();
    };
    saveMerged(
        itemState_, [&] { storage_.save(*tokens, itemHasGone); }, [this] { mergeItem(); });
    noteSaved(*tokens);
}

/// Merges what the item holds by now; the reserve gets what it lacks.
void TokenStore::mergeItem()
{
    const auto found = loadOrSetAside(storage_);
    itemState_ = State::read;
    noteSaved(found);
    merge(found);
    saveReserve();
}

void TokenStore::mergeReserve()
{
    const auto found = loadOrSetAside(reserve_);
    reserveState_ = State::read;
    merge(found);
}

void TokenStore::merge(const std::vector<AuthToken>& others)
{
    auto both = merged(*tokens, others);
    if (both != *tokens) {
        tokens = std::move(both);
    }
}

void TokenStore::noteSaved(const std::vector<AuthToken>& list)
{
    saved_.clear();
    for (const auto& token : list) {
        saved_.emplace_back(token.id, token.counter);
    }
    std::ranges::sort(saved_);
}

/// The tokens that the item lacks, or has with another counter.
std::vector<AuthToken> TokenStore::unsaved() const
{
    std::vector<AuthToken> missing;
    std::ranges::copy_if(*tokens, std::back_inserter(missing), [&](const auto& token) {
        return !std::ranges::binary_search(saved_, std::pair(token.id, token.counter));
    });
    return missing;
}

void TokenStore::advanceCounter(const AuthToken& token)
{
    const auto found = std::ranges::find(*tokens, token.id, &AuthToken::id);
    if (found == tokens->end() || found->counter == std::numeric_limits<std::uint64_t>::max()) {
        return;
    }
    const auto position = found - tokens->begin();
    tokens.modify([&](auto& list) { ++list[static_cast<std::size_t>(position)].counter; });
    persist();
}

} // namespace MirrowvaleAuthenticator
