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
        isInUse = !kept.empty();
        apart.emplace();
        return kept;
    } catch (const std::exception&) {
        return {};
    }
}

void TokenReserve::leave()
{
    apart.reset();
    isInUse = false;
}

void TokenReserve::keep(const std::vector<AuthToken>& tokens)
{
    try {
        if (!apart) {
            readApart();
        }
        storage.save(united(tokens, *apart));
        isInUse = true;
    } catch (const std::exception&) {
        return; // the failure to show is that of the list's own place
    }
}

void TokenReserve::release()
{
    if (!isInUse || !apart || !apart->empty()) {
        return;
    }
    try {
        storage.save({});
        isInUse = false;
    } catch (const std::exception&) {
        return; // the next save tries again
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
