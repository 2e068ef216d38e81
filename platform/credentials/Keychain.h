#pragma once

#include "platform/crypto/SecretMemory.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>

/// The credential store: generic-password items found by class, service and account.
namespace MirrowvaleAuthenticator {

/// A result of a keychain call: 0, or the platform's public error code.
using OSStatus = std::int32_t;

inline constexpr OSStatus errSecSuccess = 0;
inline constexpr OSStatus errSecDiskFull = -34;
inline constexpr OSStatus errSecIO = -36;
inline constexpr OSStatus errSecParam = -50;
inline constexpr OSStatus errSecWrPerm = -61; ///< the file system does not let this user read or write
inline constexpr OSStatus errSecAllocate = -108; ///< memory or the table of open files is full
inline constexpr OSStatus errSecUserCanceled = -128;
inline constexpr OSStatus errSecNotAvailable = -25291; ///< there is no store to talk to
inline constexpr OSStatus errSecDuplicateItem = -25299;
inline constexpr OSStatus errSecItemNotFound = -25300;
inline constexpr OSStatus errSecInvalidItemRef = -25304; ///< another process has changed the item
inline constexpr OSStatus errSecInteractionNotAllowed = -25308; ///< locked, and not to be unlocked now
inline constexpr OSStatus errSecDecode = -26275; ///< damaged or tampered with: does not authenticate

inline constexpr std::string_view kSecClass = "kSecClass";
inline constexpr std::string_view kSecClassGenericPassword = "kSecClassGenericPassword";
inline constexpr std::string_view kSecAttrService = "kSecAttrService";
inline constexpr std::string_view kSecAttrAccount = "kSecAttrAccount";
inline constexpr std::string_view kSecAttrAccessible = "kSecAttrAccessible"; ///< accepted, of no effect here
inline constexpr std::string_view kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly =
    "kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly";
inline constexpr std::string_view kSecValueData = "kSecValueData";
inline constexpr std::string_view kSecReturnData = "kSecReturnData";
inline constexpr std::string_view kSecMatchLimit = "kSecMatchLimit"; ///< accepted: a name has one item
inline constexpr std::string_view kSecMatchLimitOne = "kSecMatchLimitOne";
/// A flag: means the item of that name in the reserve, which lies on this device beside the item's own place.
inline constexpr std::string_view kSecUseReserve = "kSecUseReserve";
/// A flag: the item is known to exist. A keyring asks to unlock every collection that may hide it before it
/// answers `errSecItemNotFound`.
inline constexpr std::string_view kSecMatchKnownItem = "kSecMatchKnownItem";

/// An entry's value: a flag, or text or bytes.
using SecValue = std::variant<bool, SecretString>;

/// The entries of a query or of an item, by key.
using SecDictionary = std::map<std::string_view, SecValue>;

/// What a search hands back: the item's data, or nothing.
using SecResult = std::variant<std::monostate, SecretString>;

/// The operations that a credential store provides. None remembers its arguments.
class CredentialStore {
public:
    virtual ~CredentialStore() = default;
    virtual OSStatus copyMatching(const SecDictionary& query, SecResult& result) noexcept = 0;
    virtual OSStatus update(const SecDictionary& query, const SecDictionary& attributes) noexcept = 0;
    virtual OSStatus add(const SecDictionary& attributes) noexcept = 0;
    virtual OSStatus remove(const SecDictionary& query) noexcept = 0;
};

/// Finds the one item that matches class, service and account, and hands back its data.
/// @returns `errSecItemNotFound` where there is none, or the status of what went wrong
OSStatus SecItemCopyMatching(const SecDictionary& query, SecResult& result);

/// Sets the data of the item that matches class, service and account.
/// @returns `errSecItemNotFound` where there is none, `errSecInvalidItemRef` where it holds what this process
///          has neither read nor written, or the status of what went wrong
OSStatus SecItemUpdate(const SecDictionary& query, const SecDictionary& attributesToUpdate);

/// Creates the item from class, service, account and data.
/// @returns `errSecDuplicateItem` where it exists already, or the status of what went wrong
OSStatus SecItemAdd(const SecDictionary& attributes);

/// Removes the item that matches class, service and account. For the reserve alone: an item in its own place
/// is only ever replaced.
/// @returns `errSecItemNotFound` where there is none, `errSecInvalidItemRef` where it holds what this process
///          has neither read nor written, or the status of what went wrong
OSStatus SecItemDelete(const SecDictionary& query);

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
