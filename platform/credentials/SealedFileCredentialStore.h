#pragma once

#include "platform/credentials/CredentialStore.h"
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
/// its bytes are set aside beside it. An item whose file cannot be removed (its folder has become read-only)
/// is recorded as removed in the state folder. One that this store has neither read nor written (another
/// process has) is never replaced: an update answers `errSecInvalidItemRef`.
class SealedFileCredentialStore : public CredentialStore {
public:
    SealedFileCredentialStore(std::filesystem::path dataFolder, std::filesystem::path stateFolder);

    OSStatus read(const ItemName& name, Search search, SecResult& result) noexcept override;
    OSStatus update(const ItemName& name, const SecretString& data) noexcept override;
    OSStatus add(const ItemName& name, const SecretString& data) noexcept override;
    OSStatus remove(const ItemName& name) noexcept override;

private:
    struct Item;

    /// @param open  takes key, context and box, and says whether the box opens
    template <typename Open>
    OSStatus visit(const Item& item, Open open) const;
    OSStatus checkIsKnown(const Item& item) const;
    void create(const Item& item, const SecretString& data);
    void replace(const Item& item, const SecretString& data);
    void write(const PrivateFolder& folder, const Item& item, SealingKey key, const SecretString& data);
    bool isRemoved(const Item& item, std::string_view box) const;
    std::optional<SecretBytes> deviceKey() const;
    SecretBytes flushedDeviceKey() const;

    std::filesystem::path dataFolder_;
    std::filesystem::path stateFolder_;
    std::set<std::string, std::less<>> knownBoxes_; ///< by the tag of each box read or written here
};

} // namespace MirrowvaleAuthenticator
