#include "platform/KeyringModule.h"

#include "platform/SecretServiceCredentialStore.h"
#include "platform/Status.h"

#include <dlfcn.h>
#include <filesystem>

namespace MirrowvaleAuthenticator {

namespace {

/// Opens the module where an installation has it or, as in a build, beside the program.
void* openModule()
{
    const auto program = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    for (const auto* folder : {MIRROWVALE_MODULE_FOLDER, "."}) {
        const auto path = program / folder / MIRROWVALE_KEYRING_MODULE;
        if (auto* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL); module != nullptr) {
            return module;
        }
    }
    return nullptr;
}

CredentialStore* loadStore()
{
    auto* module = openModule();
    auto* symbol = module == nullptr ? nullptr : dlsym(module, "mirrowvaleKeyring");
    return symbol == nullptr ? nullptr : reinterpret_cast<decltype(&mirrowvaleKeyring)>(symbol)();
}

/// @throws StatusError  `errSecNotAvailable` where the module cannot be loaded
CredentialStore& loadedStore()
{
    static auto* const store = loadStore();
    if (store == nullptr) {
        throw StatusError{errSecNotAvailable};
    }
    return *store;
}

} // namespace

OSStatus KeyringModule::copyMatching(const SecDictionary& query, SecResult& result)
{
    return statusOf([&] { return loadedStore().copyMatching(query, result); });
}

OSStatus KeyringModule::update(const SecDictionary& query, const SecDictionary& attributes)
{
    return statusOf([&] { return loadedStore().update(query, attributes); });
}

OSStatus KeyringModule::add(const SecDictionary& attributes)
{
    return statusOf([&] { return loadedStore().add(attributes); });
}

} // namespace MirrowvaleAuthenticator
