#include "platform/credentials/KeyringModule.h"

#include "platform/credentials/Status.h"
#include "platform/system/SessionBus.h"

#include <chrono>
#include <dlfcn.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace MirrowvaleAuthenticator {

namespace {

namespace fs = std::filesystem;

constexpr auto thisProgram = "/proc/self/exe";
constexpr auto secretService = "org.freedesktop.secrets";
constexpr std::chrono::seconds timeout{1}; ///< with the bus, which answers this by itself

/// Where an installed program has its modules; any other has them beside itself.
fs::path moduleFolder()
{
    std::error_code error;
    const auto folder = fs::read_symlink(thisProgram, error).parent_path();
    return fs::equivalent(folder, MIRROWVALE_PROGRAM_FOLDER, error) ? MIRROWVALE_MODULE_FOLDER : folder;
}

/// Whether root or the program's owner made it, and others cannot write it: its folder may be open to all.
bool canBeTrusted(const fs::path& module)
{
    struct stat ours { };
    struct stat found { };
    return stat(thisProgram, &ours) == 0 && lstat(module.c_str(), &found) == 0 && S_ISREG(found.st_mode)
        && (found.st_uid == 0 || found.st_uid == ours.st_uid) && (found.st_mode & S_IWOTH) == 0;
}

CredentialStore* loadStore()
{
    const auto path = moduleFolder() / MIRROWVALE_KEYRING_MODULE;
    auto* module = canBeTrusted(path) ? dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) : nullptr;
    auto* symbol = module == nullptr ? nullptr : dlsym(module, "mirrowvaleKeyring");
    return symbol == nullptr ? nullptr : reinterpret_cast<decltype(&mirrowvaleKeyring)>(symbol)();
}

/// @throws StatusError  `errSecNotAvailable` where nobody can answer, or the module cannot be loaded
CredentialStore& loadedStore()
{
    static CredentialStore* store = nullptr;
    if (store == nullptr && hasSessionBus() && mayAnswer(secretService, timeout)) {
        store = loadStore();
    }
    if (store == nullptr) {
        throw StatusError{errSecNotAvailable};
    }
    return *store;
}

} // namespace

OSStatus KeyringModule::copyMatching(const SecDictionary& query, SecResult& result) noexcept
{
    return statusOf([&] { return loadedStore().copyMatching(query, result); });
}

OSStatus KeyringModule::update(const SecDictionary& query, const SecDictionary& attributes) noexcept
{
    return statusOf([&] { return loadedStore().update(query, attributes); });
}

OSStatus KeyringModule::add(const SecDictionary& attributes) noexcept
{
    return statusOf([&] { return loadedStore().add(attributes); });
}

OSStatus KeyringModule::remove(const SecDictionary& query) noexcept
{
    return statusOf([&] { return loadedStore().remove(query); });
}

} // namespace MirrowvaleAuthenticator
