#pragma once

#include "platform/credentials/CredentialStore.h"

#include <algorithm>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The item of the application's list.
inline const ItemName tokenStoreItem{"app.mirrowvale.authenticator.tokens", "vault"};

/// A credential store in memory, for tests: behaves like the platform's, records every call, and does what it
/// is told to do instead.
class ScriptedCredentialStore : public CredentialStore {
public:
    enum class Operation { read, update, add };

    /// One call as it came in; a search has no data.
    struct Call {
        Operation operation;
        ItemName name;
        SecretString data{};

        friend bool operator==(const Call&, const Call&) = default;
    };

    std::vector<Call> calls; ///< in order; free to be cleared
    std::map<ItemName, SecretString> items; ///< free to be changed without a call
    bool hasData = true; ///< else each search that finds its item hands back nothing
    bool isShared = false; ///< an item that this store has neither read nor written is not replaced
    CredentialStore* kept = nullptr; ///< its reserve

    OSStatus read(const ItemName& name, Search search, SecResult& result) noexcept override
    {
        lastSearch = search;
        return answer({Operation::read, name}, [&] {
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
        return answer({Operation::update, name, data}, [&] {
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
        return answer({Operation::add, name, data}, [&] {
            known.try_emplace(name, data);
            return items.emplace(name, data).second ? errSecSuccess : errSecDuplicateItem;
        });
    }

    OSStatus remove(const ItemName& name) noexcept override
    {
        return items.erase(name) > 0 ? errSecSuccess : errSecItemNotFound;
    }

    CredentialStore* reserve() noexcept override { return kept; }

    /// The next call of `operation` that has no script yet answers `status`; success does what it should.
    void answerNext(Operation operation, OSStatus status) { scripts[operation].once.push_back(status); }

    /// Every later call of `operation` answers `status`, until `errSecSuccess` is given.
    void answerAlways(Operation operation, OSStatus status) { scripts[operation].always = status; }

    /// The same for all operations.
    void answerAlways(OSStatus status)
    {
        for (const auto operation : {Operation::read, Operation::update, Operation::add}) {
            answerAlways(operation, status);
        }
    }

    std::size_t callCount(Operation operation) const
    {
        return static_cast<std::size_t>(std::ranges::count(calls, operation, &Call::operation));
    }

    Search lastSearch = Search::usual;

private:
    struct Script {
        std::deque<OSStatus> once;
        OSStatus always = errSecSuccess;
    };

    template <typename Usual>
    OSStatus answer(Call call, Usual usual)
    {
        auto& script = scripts[call.operation];
        calls.push_back(std::move(call));
        auto status = script.always;
        if (!script.once.empty()) {
            status = script.once.front();
            script.once.pop_front();
        }
        return status == errSecSuccess ? usual() : status;
    }

    std::map<ItemName, SecretString> known;
    std::map<Operation, Script> scripts;
};

} // namespace MirrowvaleAuthenticator
