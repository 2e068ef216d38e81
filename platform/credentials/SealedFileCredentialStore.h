#pragma once

#include "platform/credentials/Keychain.h"
#include "platform/crypto/SealedBox.h"
#include "platform/system/PrivateFolder.h"

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// A credential store of sealed files, one per item, in the application's data folder, under a random device
/// key that lies apart in its state folder.
///
/// A file that does not open under the key reads as `errSecDecode`; before an update replaces such a file,
/// its bytes are set aside beside it. One that this store has neither read nor written (another process has)
/// is never replaced: an update answers `errSecInvalidItemRef`.
class SealedFileCredentialStore : public CredentialStore {
public:
    SealedFileCredentialStore(std::filesystem::path dataFolder, std::filesystem::path stateFolder);

    OSStatus copyMatching(const SecDictionary& query, SecResult& result) noexcept override;
    OSStatus update(const SecDictionary& query, const SecDictionary& attributes) noexcept override;
    OSStatus add(const SecDictionary& attributes) noexcept override;
    OSStatus remove(const SecDictionary& query) noexcept override;

private:
    struct Item;

    /// @param open  takes key, context and box, and says whether the box opens
    template <typename Open>
    OSStatus visit(const Item& item, Open open) const;
    OSStatus read(const Item& item, SecretString& data);
    OSStatus check(const Item& item) const;
    OSStatus checkIsKnown(const Item& item) const;
    void create(const Item& item, const SecretString& data);
    void replace(const Item& item, const SecretString& data);
    void write(const PrivateFolder& folder, const Item& item, SealingKey key, const SecretString& data);
    std::optional<SecretBytes> deviceKey() const;
    SecretBytes flushedDeviceKey() const;

    std::filesystem::path dataFolder_;
    std::filesystem::path stateFolder_;
    std::set<std::string, std::less<>> knownBoxes_; ///< by the tag of each box read or written here
};

} // namespace MirrowvaleAuthenticator
