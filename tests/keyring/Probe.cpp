// Works on the token list as the application does, one command a line on standard input, and answers each
// with one line.

#include "storage/TokenStore.h"
#include "tests/support/Tokens.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <sstream>

using namespace MirrowvaleAuthenticator;

namespace {

std::optional<TokenStore> store;

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
    std::size_t count = 0;
    std::string issuer;
    words >> command >> count >> issuer;
    if (command == "list" || !store) {
        store.emplace();
    }
    if (command == "append") {
        append(count, issuer);
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
