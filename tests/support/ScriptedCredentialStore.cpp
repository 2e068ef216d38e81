#include "tests/support/ScriptedCredentialStore.h"

#include "storage/TokenStore.h"
#include "tests/support/KeychainEntries.h"

#include <algorithm>

namespace MirrowvaleAuthenticator {

namespace {

const SecretString* text(const SecDictionary& entries, std::string_view key)
{
    const auto found = entries.find(key);
    return found == entries.end() ? nullptr : std::get_if<SecretString>(&found->second);
}

} // namespace

std::optional<ScriptedCredentialStore::Name> ScriptedCredentialStore::name(const SecDictionary& entries)
{
    const auto* itemClass = text(entries, kSecClass);
    const auto* service = text(entries, kSecAttrService);
    const auto* account = text(entries, kSecAttrAccount);
    if (itemClass == nullptr || *itemClass != kSecClassGenericPassword || service == nullptr
        || account == nullptr) {
        return std::nullopt;
    }
    return Name(*service, *account);
}

OSStatus ScriptedCredentialStore::begin(Call call)
{
    calls.push_back(std::move(call));
    auto& script = scripts[calls.back().operation];
    if (script.once.empty()) {
        return script.always;
    }
    const auto status = script.once.front();
    script.once.pop_front();
    return status;
}

OSStatus ScriptedCredentialStore::find(const SecDictionary& query, SecDictionary*& found)
{
    const auto wanted = name(query);
    if (!wanted) {
        return errSecParam;
    }
    const auto position = items.find(*wanted);
    found = position == items.end() ? nullptr : &position->second;
    return found == nullptr ? errSecItemNotFound : errSecSuccess;
}

OSStatus ScriptedCredentialStore::copyMatching(const SecDictionary& query, SecResult& result)
{
    result = {};
    auto status = begin({Operation::copyMatching, query, {}});
    SecDictionary* found = nullptr;
    status = status == errSecSuccess ? find(query, found) : status;
    if (status != errSecSuccess) {
        return status;
    }
    const auto returnsData = query.find(kSecReturnData);
    if (oddResult) {
        result = *oddResult;
    } else if (returnsData != query.end() && returnsData->second == SecValue(true)) {
        result = *text(*found, kSecValueData);
    }
    return errSecSuccess;
}

OSStatus ScriptedCredentialStore::update(const SecDictionary& query, const SecDictionary& attributes)
{
    auto status = begin({Operation::update, query, attributes});
    SecDictionary* found = nullptr;
    status = status == errSecSuccess ? find(query, found) : status;
    if (status == errSecSuccess) {
        for (const auto& [key, value] : attributes) {
            found->insert_or_assign(key, value);
        }
    }
    return status;
}

OSStatus ScriptedCredentialStore::add(const SecDictionary& attributes)
{
    if (const auto status = begin({Operation::add, {}, attributes}); status != errSecSuccess) {
        return status;
    }
    const auto wanted = name(attributes);
    if (!wanted || text(attributes, kSecValueData) == nullptr) {
        return errSecParam;
    }
    return items.emplace(*wanted, attributes).second ? errSecSuccess : errSecDuplicateItem;
}

void ScriptedCredentialStore::put(std::string_view service, std::string_view account, std::string_view data)
{
    items.insert_or_assign(Name(service, account), item(service, account, data));
}

std::optional<std::string> ScriptedCredentialStore::data(std::string_view service,
                                                         std::string_view account) const
{
    const auto found = items.find(Name(service, account));
    return found == items.end() ? std::nullopt
                                : std::optional<std::string>(*text(found->second, kSecValueData));
}

const SecDictionary& ScriptedCredentialStore::entries(std::string_view service,
                                                      std::string_view account) const
{
    return items.at(Name(service, account));
}

std::size_t ScriptedCredentialStore::callCount(Operation operation) const
{
    return static_cast<std::size_t>(std::ranges::count(calls, operation, &Call::operation));
}

std::string tokenStoreService()
{
    ScriptedCredentialStore probe;
    const CredentialStoreOverride inPlace(probe);
    const TokenStore store;
    return std::string(*text(probe.calls.at(0).query, kSecAttrService));
}

} // namespace MirrowvaleAuthenticator
