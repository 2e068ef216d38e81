#include "storage/TokenStore.h"

#include "core/StoredForm.h"
#include "platform/LocalizedError.h"
#include "platform/Text.h"
#include "storage/TokenUnion.h"

#include <algorithm>
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

    // In place, cycle by cycle: fresh memory for the whole list would take longer than the sort.
    for (std::size_t place = 0; place < entries.size(); ++place) {
        const auto source = [&](std::size_t to) { return std::exchange(entries[to].position, to); };
        auto to = place;
        for (auto from = source(to); from != place; from = source(to)) {
            std::swap(tokens[to], tokens[from]);
            to = from;
        }
    }
}

} // namespace

TokenStore::TokenStore() : storage(service, account), reserve(service, account)
{
    load();
}

void TokenStore::load()
{
    std::vector<AuthToken> loaded;
    std::optional<std::string> failure;
    try {
        loaded = united(loadItem(), reserve.take());
        sortByIssuer(loaded);
        item = Item::known;
    } catch (const std::exception& error) {
        failure = localizedDescription(error);
        reserve.leave();
    }
    if (failure) {
        lastError = std::move(failure);
        tokens = {};
    } else {
        tokens = std::move(loaded);
        lastError = std::nullopt;
    }
}

/// Whoever takes the list into `tokens` then calls it known.
std::vector<AuthToken> TokenStore::loadItem()
{
    item = Item::unreached;
    try {
        return storage.load();
    } catch (const StoredFormError&) {
        item = Item::unreadable;
        throw;
    } catch (const KeychainTokenStoreError& error) {
        if (error.unexpectedStatus() == errSecDecode) {
            item = Item::known; // the credential store itself sets aside what it cannot open
        }
        throw;
    }
}

void TokenStore::persist()
{
    std::optional<std::string> failure;
    if (item == Item::unreached) {
        failure = *lastError;
    } else {
        try {
            saveItem();
        } catch (const std::exception& error) {
            failure = localizedDescription(error);
        }
    }
    if (failure) {
        reserve.keep(*tokens);
    } else {
        reserve.release();
    }
    lastError = std::move(failure);
}

void TokenStore::saveItem()
{
    if (item == Item::unreadable) {
        storage.setAside();
        item = Item::known;
    }
    try {
        storage.save(*tokens);
    } catch (const KeychainTokenStoreError& error) {
        if (error.unexpectedStatus() != errSecInvalidItemRef) {
            throw;
        }
        tokens = united(*tokens, loadItem());
        item = Item::known;
        storage.save(*tokens);
    }
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
