#pragma once

#include "platform/Keychain.h"

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

/// A credential store in memory, for tests: behaves like the platform's, records every call, and does what it
/// is told to do instead.
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

    OSStatus copyMatching(const SecDictionary& query, SecResult& result) override;
    OSStatus update(const SecDictionary& query, const SecDictionary& attributes) override;
    OSStatus add(const SecDictionary& attributes) override;

    /// The next call of `operation` that has no script yet answers `status`; success does what it should.
    void answerNext(Operation operation, OSStatus status) { scripts[operation].once.push_back(status); }

    /// Every later call of `operation` answers `status`, until `errSecSuccess` is given.
    void answerAlways(Operation operation, OSStatus status) { scripts[operation].always = status; }

    /// Every later search that finds its item hands back `result`, whatever the item holds.
    void handBackAlways(SecResult result) { oddResult = std::move(result); }

    /// Puts an item in place without a call.
    void put(std::string_view service, std::string_view account, std::string_view data);

    /// An item's data, or nothing where there is no such item.
    std::optional<std::string> data(std::string_view service, std::string_view account) const;

    /// The entries of an item, which must exist.
    const SecDictionary& entries(std::string_view service, std::string_view account) const;

    std::size_t itemCount() const { return items.size(); }
    std::size_t callCount(Operation operation) const;

private:
    using Name = std::pair<SecretString, SecretString>;
    struct Script {
        std::deque<OSStatus> once;
        OSStatus always = errSecSuccess;
    };

    static std::optional<Name> name(const SecDictionary& entries);
    OSStatus begin(Call call);
    OSStatus find(const SecDictionary& query, SecDictionary*& found);

    std::map<Name, SecDictionary> items; ///< by service and account
    std::map<Operation, Script> scripts;
    std::optional<SecResult> oddResult;
};

/// The service name under which the application's token store keeps its item.
std::string tokenStoreService();

} // namespace MirrowvaleAuthenticator
