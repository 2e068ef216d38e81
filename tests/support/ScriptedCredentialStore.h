#pragma once

#include "platform/credentials/CredentialStore.h"

#include <map>
#include <string>
#include <utility>

namespace MirrowvaleAuthenticator {

/// The item of the application's list.
inline const ItemName tokenStoreItem{"app.mirrowvale.authenticator.tokens", "vault"};

/// A credential store in memory, for tests: behaves like the platform's, counts the calls, and does what it
/// is told to do instead.
class ScriptedCredentialStore : public CredentialStore {
public:
    enum class Operation { read, update, add };

    std::map<Operation, std::size_t> calls; ///< so far
    std::map<ItemName, SecretString> items; ///< free to be changed without a call
    bool hasData = true; ///< else each search that finds its item hands back nothing
    bool isShared = false; ///< an item that this store has neither read nor written is not replaced
    CredentialStore* kept = nullptr; ///< its reserve
    Search lastSearch = Search::usual;

    OSStatus read(const ItemName& name, Search search, SecResult& result) noexcept override
    {
        lastSearch = search;
        return answer(Operation::read, [&] {
            result.reset();
            const auto found = items.find(name);
            if (found == items.end()) {
                return errSecItemNotFound;
            }
            if (hasData && search != Search::quiet) {
                known[name] = found->second;
                result = found->second;
            }
            return errSecSuccess;
        });
    }

    OSStatus update(const ItemName& name, const SecretString& data) noexcept override
    {
        return answer(Operation::update, [&] {
            const auto found = items.find(name);
            if (found == items.end()) {
                return errSecItemNotFound;
            }
            if (isShared && known[name] != found->second) {
                return errSecInvalidItemRef;
            }
            found->second = known[name] = data;
            return errSecSuccess;
        });
    }

    OSStatus add(const ItemName& name, const SecretString& data) noexcept override
    {
        return answer(Operation::add, [&] {
            known.try_emplace(name, data);
            return items.emplace(name, data).second ? errSecSuccess : errSecDuplicateItem;
        });
    }

    OSStatus remove(const ItemName& name) noexcept override
    {
        return items.erase(name) > 0 ? errSecSuccess : errSecItemNotFound;
    }

    CredentialStore* reserve() noexcept override { return kept; }

    /// The next call of `operation` fails with `status`.
    void answerNext(Operation operation, OSStatus status) { next[operation] = status; }

    /// Every later call of `operation` answers `status`, until `errSecSuccess` is given: it does what it
    /// should.
    void answerAlways(Operation operation, OSStatus status) { always[operation] = status; }

    /// The same for all operations.
    void answerAlways(OSStatus status)
    {
        always = {{Operation::read, status}, {Operation::update, status}, {Operation::add, status}};
    }

private:
    template <typename Usual>
    OSStatus answer(Operation operation, Usual usual)
    {
        ++calls[operation];
        const auto once = std::exchange(next[operation], errSecSuccess);
        const auto status = once != errSecSuccess ? once : always[operation];
        return status == errSecSuccess ? usual() : status;
    }

    std::map<ItemName, SecretString> known;
    std::map<Operation, OSStatus> next;
    std::map<Operation, OSStatus> always;
};

} // namespace MirrowvaleAuthenticator
