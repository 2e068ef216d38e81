#include "storage/TokenReserve.h"

#include "core/StoredForm.h"
#include "storage/TokenUnion.h"

#include <exception>
#include <utility>

namespace MirrowvaleAuthenticator {

TokenReserve::TokenReserve(std::string service, std::string account)
    : storage(std::move(service), std::move(account), KeychainTokenStore::Place::reserve)
{
}

std::vector<AuthToken> TokenReserve::take()
{
    leave();
    try {
        auto kept = storage.load();
        inUse = !kept.empty();
        apart.emplace();
        return kept;
    } catch (const std::exception&) {
        return {};
    }
}

void TokenReserve::leave()
{
    apart.reset();
    inUse = false;
}

bool TokenReserve::keep(const std::vector<AuthToken>& tokens)
{
    try {
        if (!apart) {
            readApart();
        }
        save(tokens);
        inUse = true;
        return true;
    } catch (const std::exception&) {
        return false; // the failure to show is that of the list's own place
    }
}

void TokenReserve::release()
{
    if (!inUse) {
        return;
    }
    try {
        if (apart->empty()) {
            storage.remove();
        } else {
            storage.save(*apart);
        }
        inUse = false;
    } catch (const std::exception&) {
        return; // the next save tries again
    }
}

/// Saves tokens beside what is kept apart; where another process has changed that, it is read once more.
void TokenReserve::save(const std::vector<AuthToken>& tokens)
{
    try {
        storage.save(united(tokens, *apart));
    } catch (const KeychainTokenStoreError& error) {
        if (!error.saysChanged()) {
            throw;
        }
        readApart();
        storage.save(united(tokens, *apart));
    }
}

/// Reads what is kept; what is no list is set aside before anything replaces it.
void TokenReserve::readApart()
{
    try {
        apart = storage.load();
    } catch (const StoredFormError&) {
        storage.setAside();
        apart.emplace();
    } catch (const KeychainTokenStoreError& error) {
        if (error.unexpectedStatus() != errSecDecode) {
            throw;
        }
        apart.emplace(); // the credential store itself sets aside what it cannot open
    }
}

} // namespace MirrowvaleAuthenticator
