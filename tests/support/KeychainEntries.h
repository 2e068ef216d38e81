#pragma once

#include "platform/credentials/Keychain.h"

#include <string_view>

namespace MirrowvaleAuthenticator {

/// The service under which the application's token store keeps its item.
constexpr auto tokenStoreService = "app.mirrowvale.authenticator.tokens";

inline SecValue textValue(std::string_view text)
{
    return SecretString(text);
}

/// The three entries that name an item.
inline SecDictionary itemName(std::string_view service, std::string_view account)
{
    return {{kSecClass, textValue(kSecClassGenericPassword)},
            {kSecAttrService, textValue(service)},
            {kSecAttrAccount, textValue(account)}};
}

/// The two entries that an item holds beside its name.
inline SecDictionary itemContent(std::string_view data)
{
    return {{kSecValueData, textValue(data)},
            {kSecAttrAccessible, textValue(kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly)}};
}

/// A whole item: its name and its content.
inline SecDictionary item(std::string_view service, std::string_view account, std::string_view data)
{
    auto entries = itemName(service, account);
    entries.merge(itemContent(data));
    return entries;
}

/// The entries of a search for an item's data.
inline SecDictionary itemSearch(std::string_view service, std::string_view account)
{
    auto entries = itemName(service, account);
    entries.insert({{kSecReturnData, true}, {kSecMatchLimit, textValue(kSecMatchLimitOne)}});
    return entries;
}

} // namespace MirrowvaleAuthenticator
