#pragma once

#include "platform/credentials/DeviceCredentialStore.h"
#include "platform/credentials/SealedFileCredentialStore.h"
#include "platform/keychain/Keychain.h"
#include "storage/KeychainTokenStoreError.h"
#include "storage/TokenStore.h"
#include "tests/support/ScriptedCredentialStore.h"
#include "tests/support/TemporaryHome.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

namespace fs = std::filesystem;

/// A list of one token, which is known by its number and differs from others in length, too.
inline std::vector<AuthToken> numberedList(int number)
{
    AuthToken token;
    token.id.bytes[0] = static_cast<std::uint8_t>(number);
    token.issuer = "list " + std::to_string(number);
    token.account.assign(static_cast<std::size_t>(number), 'a');
    token.secretBase32 = "GEZDGNBVGY3TQOJQ";
    return {token};
}

inline std::string listName(int number)
{
    return "list " + std::to_string(number);
}

/// "list 3" for the whole list 3, "nothing" for an empty one, "list 2 + list 3" for both.
inline std::string nameOf(const std::vector<AuthToken>& tokens)
{
    std::string names;
    for (const auto& token : tokens) {
        const bool isWhole = token.issuer.size() > 5 && numberedList(token.issuer[5] - '0').front() == token;
        names += (names.empty() ? "" : " + ") + (isWhole ? token.issuer : "a spoilt token");
    }
    return names.empty() ? "nothing" : names;
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

/// A home with a device's credential store, which is in use while it lives; of several, the latest one's. Its
/// keyring cannot be reached unless a test lets it answer.
class Vault {
public:
    explicit Vault(const fs::path& parent = quickFolder()) : home(parent)
    {
        keyring.answerAlways(errSecNotAvailable);
        restart();
    }
    ~Vault() { current = previous; }

    const TemporaryHome home;
    const fs::path item = home.data() / (tokenStoreItem.service + "_vault.sealed");
    const fs::path key = home.state() / "device.key";
    ScriptedCredentialStore keyring;

    /// The program ends; the next one finds out anew where its list lives.
    static void restart()
    {
        current->device.emplace(current->keyring, current->sealedFiles, current->home.state());
        current->inPlace.reset(); // first: it goes back to what was in place before it
        current->inPlace.emplace(*current->device);
    }

    /// What a start of the program finds: a list's name, or the message of what went wrong.
    static std::string found()
    {
        restart();
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
        restart();
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
            if (entry.is_regular_file() && !entry.path().extension().string().starts_with(".new")) {
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
            if (credentialStore().read({tokenStoreItem.service, account}, Search::usual, result)
                == errSecSuccess) {
                kept.emplace(*result);
            }
        }
        return std::ranges::includes(kept, treasures);
    }

private:
    static inline Vault* current = nullptr;
    Vault* previous = std::exchange(current, this);
    SealedFileCredentialStore sealedFiles{home.data(), home.state()};
    std::optional<DeviceCredentialStore> device;
    std::optional<CredentialStoreOverride> inPlace;
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
    {"item undecodable", [](const Vault&) { credentialStore().update(tokenStoreItem, Start::undecodable); }},
};

} // namespace MirrowvaleAuthenticator
