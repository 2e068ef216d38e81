// Works on the credential store as the application does, one command a line on standard input, and answers
// each with one line.

#include "platform/keychain/Keychain.h"
#include "storage/TokenStore.h"
#include "tests/support/ScriptedCredentialStore.h"
#include "tests/support/Tokens.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <set>
#include <sstream>

using namespace MirrowvaleAuthenticator;

namespace {

std::optional<TokenStore> store;

ItemName itemNamed(const std::string& account)
{
    return {tokenStoreItem.service, account};
}

/// Status, data.
std::string find(const std::string& account)
{
    SecResult result;
    const auto status = credentialStore().read(itemNamed(account), Search::usual, result);
    return std::to_string(status) + (result ? " " + std::string(*result) : "");
}

/// Status of the update, then that of an add where one follows; or of the search without which the
/// application saves nothing.
std::string save(const std::string& account, const std::string& text)
{
    static std::set<std::string> seen;
    const auto name = itemNamed(account);
    const SecretString data(text);
    if (seen.insert(account).second) {
        SecResult ignored;
        const auto found = credentialStore().read(name, Search::usual, ignored);
        if (found != errSecSuccess && found != errSecItemNotFound) {
            return std::to_string(found);
        }
    }
    const auto updated = credentialStore().update(name, data);
    return std::to_string(updated)
        + (updated == errSecItemNotFound ? " " + std::to_string(credentialStore().add(name, data)) : "");
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
