#pragma once

#include "platform/EmbeddedCredentialStore.h"
#include "storage/TokenStore.h"
#include "tests/support/KeychainEntries.h"
#include "tests/support/TemporaryHome.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

namespace MirrowvaleAuthenticator {

namespace fs = std::filesystem;

/// How much of an experiment to run: an environment variable's value, or what suits every build.
inline int amount(const char* variable, int usual)
{
    const char* value = std::getenv(variable);
    return value == nullptr ? usual : std::atoi(value);
}

/// A list that is known by its number as long as no token of it is lost or changed; short for a number
/// below 10.
inline std::vector<AuthToken> numberedList(int number)
{
    std::vector<AuthToken> tokens(static_cast<std::size_t>(1 + number / 10 * 37 % 150));
    for (auto& token : tokens) {
        token.issuer = "list " + std::to_string(number);
        token.secretBase32 = "GEZDGNBVGY3TQOJQ";
        token.counter = static_cast<std::uint64_t>(&token - tokens.data());
    }
    return tokens;
}

inline std::string listName(int number)
{
    return "list " + std::to_string(number);
}

/// "list 3" for the whole list 3, "nothing" for an empty one.
inline std::string nameOf(const std::vector<AuthToken>& tokens)
{
    if (tokens.empty()) {
        return "nothing";
    }
    const auto& name = tokens.front().issuer;
    return name.size() > 5 && tokens == numberedList(std::atoi(name.c_str() + 5)) ? name : "a spoilt list";
}

inline std::string statusMessage(OSStatus status)
{
    return KeychainTokenStoreError(status).errorDescription();
}

/// A folder in memory, where this machine has one: many small files are written there in no time.
inline fs::path quickFolder()
{
    return access("/dev/shm", W_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path();
}

/// A home with an embedded credential store, which is in use while it lives; of several, the latest one's.
class Vault {
public:
    explicit Vault(const fs::path& parent = quickFolder()) : home(parent) { }

    static constexpr auto service = tokenStoreService;
    const TemporaryHome home;
    const fs::path item = home.data() / (std::string(service) + "_vault.sealed");
    const fs::path key = home.state() / "device.key";

    /// What a start of the program finds: a list's name, or the message of what went wrong.
    static std::string found()
    {
        const TokenStore store;
        return store.lastError->value_or(nameOf(*store.tokens));
    }

    /// Saves a list in a running program, or in one just started.
    /// @returns the message of what went wrong, or nothing
    static std::string save(TokenStore& store, int number)
    {
        store.tokens = numberedList(number);
        store.persist();
        return store.lastError->value_or("");
    }
    static std::string save(int number)
    {
        TokenStore store;
        return save(store, number);
    }

    void clear() const
    {
        for (const auto& entry : fs::directory_iterator(home.root)) {
            fs::remove_all(entry);
        }
    }

    /// The bytes of each file, but for what an interrupted write left.
    std::multiset<std::string> files() const
    {
        std::multiset<std::string> result;
        for (const auto& entry : fs::recursive_directory_iterator(home.root)) {
            if (entry.is_regular_file() && entry.path().extension() != ".new") {
                result.insert(contents(entry));
            }
        }
        return result;
    }

    /// Whether all of these are bytes of a file, or the data of an item.
    bool keeps(const std::multiset<std::string>& treasures) const
    {
        auto kept = files();
        for (const auto* account : {"vault", "vault.unreadable-1", "vault.unreadable-2"}) {
            SecResult result;
            if (SecItemCopyMatching(itemSearch(service, account), result) == errSecSuccess) {
                kept.emplace(std::get<SecretString>(result));
            }
        }
        return std::ranges::includes(kept, treasures);
    }

private:
    EmbeddedCredentialStore store{home.data(), home.state()};
    CredentialStoreOverride inPlace{store};
};

/// What a save may start from, made out of a stored list 0.
struct Start {
    const char* name;
    void (*change)(const Vault&);

    /// @returns bytes that must never get lost: what cannot be read
    std::multiset<std::string> make(const Vault& vault) const
    {
        Vault::save(0);
        change(vault);
        if (vault.keeps({undecodable})) {
            return {undecodable};
        }
        return Vault::found() == statusMessage(errSecDecode) ? vault.files() : std::multiset<std::string>();
    }

    static constexpr auto undecodable = "[{}]";
};

inline constexpr Start starts[] = {
    {"first save", [](const Vault& vault) { vault.clear(); }},
    {"update", [](const Vault&) {}},
    {"item damaged", [](const Vault& vault) { overwrite(vault.item, "damaged"); }},
    {"key lost", [](const Vault& vault) { fs::remove_all(vault.home.root / "state"); }},
    {"key cut short", [](const Vault& vault) { fs::resize_file(vault.key, 31); }},
    {"item undecodable",
     [](const Vault& vault) {
         SecItemUpdate(itemName(vault.service, "vault"), itemContent(Start::undecodable));
     }},
};

} // namespace MirrowvaleAuthenticator
