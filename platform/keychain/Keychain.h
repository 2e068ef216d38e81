#pragma once

#include "platform/credentials/CredentialStore.h"

#include <map>
#include <string>
#include <string_view>
#include <variant>

/// The keychain: generic-password items found by class, service and account, in this device's credential
/// store.
namespace MirrowvaleAuthenticator {

inline constexpr std::string_view kSecClass = "kSecClass";
inline constexpr std::string_view kSecClassGenericPassword = "kSecClassGenericPassword";
inline constexpr std::string_view kSecAttrService = "kSecAttrService";
inline constexpr std::string_view kSecAttrAccount = "kSecAttrAccount";
inline constexpr std::string_view kSecAttrAccessible = "kSecAttrAccessible"; ///< accepted, of no effect here
inline constexpr std::string_view kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly =
    "kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly";
inline constexpr std::string_view kSecValueData = "kSecValueData";
inline constexpr std::string_view kSecReturnData = "kSecReturnData"; ///< required
inline constexpr std::string_view kSecMatchLimit = "kSecMatchLimit"; ///< accepted: a name has one item
inline constexpr std::string_view kSecMatchLimitOne = "kSecMatchLimitOne";

/// An entry's value: a flag, a text, or an item's data.
using SecValue = std::variant<bool, std::string, SecretString>;

/// The entries of a query or of an item, by key.
using SecDictionary = std::map<std::string_view, SecValue>;

/// Finds the one item that matches class, service and account, and hands back its data.
/// @returns as `CredentialStore::read`; `errSecParam` where the query names no item, or asks for no data
OSStatus SecItemCopyMatching(const SecDictionary& query, SecResult& result);

/// Sets the data of the item that matches class, service and account.
/// @returns as `CredentialStore::update`; `errSecParam` where the entries lack a name or data
OSStatus SecItemUpdate(const SecDictionary& query, const SecDictionary& attributesToUpdate);

/// Creates the item from class, service, account and data.
/// @returns as `CredentialStore::add`; `errSecParam` where the entries lack a name or data
OSStatus SecItemAdd(const SecDictionary& attributes);

/// The store behind the operations above.
CredentialStore& credentialStore();

/// Puts another store under the operations above for as long as this object lives; for tests.
class CredentialStoreOverride {
public:
    explicit CredentialStoreOverride(CredentialStore& store);
    ~CredentialStoreOverride();
    CredentialStoreOverride(const CredentialStoreOverride&) = delete;
    CredentialStoreOverride& operator=(const CredentialStoreOverride&) = delete;

private:
    CredentialStore* previous_;
};

} // namespace MirrowvaleAuthenticator
