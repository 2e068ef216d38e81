// Works on the credential store as the application does, one command a line on standard input, and answers
// each with one line.

#include "platform/credentials/Keychain.h"
#include "storage/TokenStore.h"
#include "tests/support/KeychainEntries.h"
#include "tests/support/Tokens.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <set>
#include <sstream>

using namespace MirrowvaleAuthenticator;

namespace {

constexpr auto service = tokenStoreService;
std::optional<TokenStore> store;

/// Status, data.
std::string find(const std::string& account)
{
    SecResult result;
    const auto status = SecItemCopyMatching(itemSearch(service, account), result);
    const auto* data = std::get_if<SecretString>(&result);
    return std::to_string(status) + (data == nullptr ? "" : " " + std::string(*data));
}

/// Status of the update, then that of an add where one follows; or of the search without which the
/// application saves nothing.
std::string save(const std::string& account, const std::string& data)
{
    static std::set<std::string> seen;
    if (seen.insert(account).second) {
        SecResult ignored;
        const auto found = SecItemCopyMatching(itemSearch(service, account), ignored);
        if (found != errSecSuccess && found != errSecItemNotFound) {
            return std::to_string(found);
        }
    }
    const auto updated = SecItemUpdate(itemName(service, account), itemContent(data));
    return updated != errSecItemNotFound
        ? std::to_string(updated)
        : std::to_string(updated) + " " + std::to_string(SecItemAdd(item(service, account, data)));
}

/// Adds tokens whose issuers descend, and saves the list.
void append(std::size_t count, const std::string& issuer)
{
    store->tokens.modify([&](auto& tokens) {
        for (auto number = count; number > 0; --number) {
            tokens.push_back(tokenNamed(issuer + std::to_string(100'000 + number)));
        }
    });
    store->persist();
}

/// Number of tokens, whether they are sorted, message of the last failure.
std::string list()
{
    const bool isSorted = std::ranges::is_sorted(*store->tokens, {}, &AuthToken::issuer);
    return std::to_string(store->tokens->size()) + (isSorted ? " sorted " : " unsorted ")
        + store->lastError->value_or("");
}

std::string answer(const std::string& line)
{
    std::istringstream words(line);
    std::string command;
    std::string argument;
    std::string rest;
    words >> command >> argument >> std::ws;
    std::getline(words, rest);
    if (command == "find") {
        return find(argument);
    }
    if (command == "save") {
        return save(argument, rest);
    }
    if (command == "list" || !store) {
        store.emplace();
    }
    if (command == "append") {
        append(std::stoul(argument), rest);
    }
    return list();
}

} // namespace

int main()
{
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << answer(line) << std::endl;
    }
}
