#pragma once

#include "tests/support/KeychainEntries.h"

#include <algorithm>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

/// A credential store in memory, for tests: behaves like the platform's, records every call, and does what it
/// is told to do instead. Calls on the reserve, whose items have " (reserve)" behind their accounts here, are
/// neither recorded nor scripted.
class ScriptedCredentialStore : public CredentialStore {
public:
    enum class Operation { copyMatching, update, add };

    /// One call as it came in; `attributes` is empty for a search, `query` for an add.
    struct Call {
        Operation operation;
        SecDictionary query;
        SecDictionary attributes;

        friend bool operator==(const Call&, const Call&) = default;
    };

    std::vector<Call> calls; ///< in order; free to be cleared
    std::optional<SecResult> oddResult; ///< what each search that finds its item hands back instead of data

    bool hasReserve = true;
    bool removesNothing = false; ///< fails instead

    OSStatus copyMatching(const SecDictionary& query, SecResult& result) noexcept override
    {
        return answer({Operation::copyMatching, query, {}}, [&] {
            const auto found = items.find(name(query));
            if (found == items.end()) {
                return errSecItemNotFound;
            }
            result = oddResult.value_or(std::get<SecretString>(found->second.at(kSecValueData)));
            return errSecSuccess;
        });
    }

    OSStatus update(const SecDictionary& query, const SecDictionary& attributes) noexcept override
    {
        return answer({Operation::update, query, attributes}, [&] {
            const auto found = items.find(name(query));
            if (found == items.end()) {
                return errSecItemNotFound;
            }
            for (const auto& [key, value] : attributes) {
                found->second.insert_or_assign(key, value);
            }
            return errSecSuccess;
        });
    }

    OSStatus add(const SecDictionary& attributes) noexcept override
    {
        return answer({Operation::add, {}, attributes}, [&] {
            return items.emplace(name(attributes), attributes).second ? errSecSuccess : errSecDuplicateItem;
        });
    }

    OSStatus remove(const SecDictionary& query) noexcept override
    {
        return removesNothing ? errSecIO : items.erase(name(query)) > 0 ? errSecSuccess : errSecItemNotFound;
    }

    /// The next call of `operation` that has no script yet answers `status`; success does what it should.
    void answerNext(Operation operation, OSStatus status) { scripts[operation].once.push_back(status); }

    /// Every later call of `operation` answers `status`, until `errSecSuccess` is given.
    void answerAlways(Operation operation, OSStatus status) { scripts[operation].always = status; }

    /// Puts an item in place without a call.
    void put(std::string_view service, std::string_view account, std::string_view data)
    {
        items.insert_or_assign({SecretString(service), SecretString(account)}, item(service, account, data));
    }

    /// An item's data, or nothing where there is no such item.
    std::optional<std::string> data(std::string_view service, std::string_view account) const
    {
        const auto found = items.find({SecretString(service), SecretString(account)});
        return found == items.end()
            ? std::nullopt
            : std::optional<std::string>(std::get<SecretString>(found->second.at(kSecValueData)));
    }

    std::size_t callCount(Operation operation) const
    {
        return static_cast<std::size_t>(std::ranges::count(calls, operation, &Call::operation));
    }

private:
    using Name = std::pair<SecretString, SecretString>;
    struct Script {
        std::deque<OSStatus> once;
        OSStatus always = errSecSuccess;
    };

    static Name name(const SecDictionary& entries)
    {
        return {std::get<SecretString>(entries.at(kSecAttrService)),
                std::get<SecretString>(entries.at(kSecAttrAccount))
                    + (entries.contains(kSecUseReserve) ? " (reserve)" : "")};
    }

    template <typename Usual>
    OSStatus answer(Call call, Usual usual)
    {
        if (call.query.contains(kSecUseReserve) || call.attributes.contains(kSecUseReserve)) {
            return hasReserve ? usual() : errSecNotAvailable;
        }
        auto& script = scripts[call.operation];
        calls.push_back(std::move(call));
        auto status = script.always;
        if (!script.once.empty()) {
            status = script.once.front();
            script.once.pop_front();
        }
        return status == errSecSuccess ? usual() : status;
    }

    std::map<Name, SecDictionary> items; ///< by service and account
    std::map<Operation, Script> scripts;
};

} // namespace MirrowvaleAuthenticator
