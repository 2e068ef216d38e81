#include "storage/TokenStore.h"

#include "core/StoredForm.h"
#include "platform/text/LocalizedError.h"
#include "platform/text/Text.h"
#include "storage/TokenUnion.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

constexpr auto service = "app.mirrowvale.authenticator.tokens";
constexpr auto account = "vault";

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
    std::vector<AuthToken> loaded;
    std::optional<std::string> failure;
    unseen_ = std::nullopt;
    try {
        loaded = loadItem();
        noteSaved(loaded);
        loaded = united(std::move(loaded), reserve_.take());
        sortByIssuer(loaded);
        item_ = Item::known;
    } catch (const std::exception& error) {
        failure = localizedDescription(error);
        reserve_.leave();
    }
    if (failure) {
        lastError = std::move(failure);
        tokens = {};
        return;
    }
    tokens = std::move(loaded);
    lastError = std::nullopt;
    if (reserve_.isInUse()) {
        persist(); // what lies in two places is in its own before anything else can happen to it
    }
}

/// A caller that takes the list into `tokens` sets `item_` to `known`.
std::vector<AuthToken> TokenStore::loadItem()
{
    item_ = Item::unreached;
    try {
        return storage_.load();
    } catch (const StoredFormError&) {
        item_ = Item::unreadable;
        throw;
    } catch (const KeychainTokenStoreError& error) {
        if (error.unexpectedStatus() == errSecDecode) {
            item_ = Item::known; // the credential store itself sets aside what it cannot open
        }
        throw;
    }
}

void TokenStore::persist()
{
    std::optional<std::string> failure;
    if (item_ == Item::unreached) {
        failure = unseen_ || !reserve_.keep(*tokens) ? saveUnseen() : *lastError;
    } else {
        try {
            saveItem();
            noteSaved(*tokens);
            reserve_.release();
        } catch (const std::exception& error) {
            failure = localizedDescription(error);
            reserve_.keep(unsaved());
        }
    }
    lastError = std::move(failure);
}

void TokenStore::saveItem()
{
    if (item_ == Item::unreadable) {
        tokens = united(*tokens, storage_.loadOrSetAside()); // another process may have made it a list since
        item_ = Item::known;
    }
    try {
        storage_.save(*tokens);
    } catch (const KeychainTokenStoreError& error) {
        if (!error.saysChanged()) {
            throw;
        }
        uniteWithItem();
        storage_.save(*tokens);
    }
}

/// Takes over what another process has stored meanwhile.
void TokenStore::uniteWithItem()
{
    try {
        tokens = united(*tokens, loadItem());
        item_ = Item::known;
    } catch (const std::exception&) {
        item_ = item_ == Item::unreached ? Item::known : item_; // the next save comes here again
        throw;
    }
}

/// The list could not be loaded, and there is no reserve: the item may be there again. What it held is not
/// shown before the next load, but stays.
/// @returns  why that failed
std::optional<std::string> TokenStore::saveUnseen()
{
    try {
        if (!unseen_) {
            unseen_ = storage_.load();
        }
        storage_.save(united(*tokens, *unseen_));
        reserve_.release();
        return std::nullopt;
    } catch (const std::exception& error) {
        const auto* status = dynamic_cast<const KeychainTokenStoreError*>(&error);
        if (status != nullptr && status->saysChanged()) {
            unseen_ = std::nullopt; // the next save reads it again
        }
        reserve_.keep(*tokens); // it may be there by now
        return localizedDescription(error);
    }
}

void TokenStore::noteSaved(const std::vector<AuthToken>& list)
{
    saved_.clear();
    saved_.reserve(list.size());
    for (const auto& token : list) {
        saved_.emplace_back(token.id.bytes, token.counter);
    }
}

/// The tokens that the item lacks, or has with another counter.
std::vector<AuthToken> TokenStore::unsaved() const
{
    auto stored = saved_;
    std::ranges::sort(stored);
    std::vector<AuthToken> missing;
    std::ranges::copy_if(*tokens, std::back_inserter(missing), [&](const auto& token) {
        return !std::ranges::binary_search(stored, std::pair(token.id.bytes, token.counter));
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
