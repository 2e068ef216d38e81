#pragma once

#include <filesystem>

namespace MirrowvaleAuthenticator {

/// Makes this process keep its files below `folder`, far from the user's own. To be called before the list is
/// first touched.
void useHome(const std::filesystem::path& folder);

/// The same, and has it keep its list there too: a keyring would be asked otherwise.
void useSealedHome(const std::filesystem::path& folder);

} // namespace MirrowvaleAuthenticator
