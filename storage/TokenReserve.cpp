#include "storage/TokenReserve.h"

#include "storage/TokenUnion.h"

#include <exception>
#include <utility>

namespace MirrowvaleAuthenticator {

TokenReserve::TokenReserve(std::string service, std::string account)
    : storage_(std::move(service), std::move(account), KeychainTokenStore::Place::reserve)
{
}

std::vector<AuthToken> TokenReserve::take()
{
    leave();
    try {
        auto kept = storage_.load();
        isInUse_ = !kept.empty();
        isRead_ = true;
        return kept;
    } catch (const std::exception&) {
        return {};
    }
}

void TokenReserve::leave()
{
    apart_.clear();
    isRead_ = false;
    isInUse_ = false;
}

bool TokenReserve::keep(const std::vector<AuthToken>& tokens)
{
    try {
        if (!isRead_) {
            readApart();
        }
        save(tokens);
        isInUse_ = true;
        return true;
    } catch (const std::exception&) {
        return false; // the failure to show is that of the list's own place
    }
}

void TokenReserve::release()
{
    if (!isInUse_) {
        return;
    }
    try {
        if (apart_.empty()) {
            storage_.remove();
        } else {
            storage_.save(apart_);
        }
        isInUse_ = false;
    } catch (const std::exception&) {
        return; // the next save tries again
    }
}

/// Saves tokens beside what is kept apart; where another process has changed that, it is read once more.
void TokenReserve::save(const std::vector<AuthToken>& tokens)
{
    try {
        storage_.save(united(tokens, apart_));
    } catch (const KeychainTokenStoreError& error) {
        if (!error.saysChanged()) {
            throw;
        }
        readApart();
        storage_.save(united(tokens, apart_));
    }
}

/// Reads what is kept; what is no list is set aside before anything replaces it.
void TokenReserve::readApart()
{
    apart_ = storage_.loadOrSetAside();
    isRead_ = true;
}

} // namespace MirrowvaleAuthenticator
