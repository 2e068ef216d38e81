#pragma once

#include <filesystem>

namespace MirrowvaleAuthenticator {

/// Makes this process keep its list in sealed files below `folder`, far from the user's own: a keyring would
/// be asked otherwise. To be called before the list is first touched.
void useSealedHome(const std::filesystem::path& folder);

} // namespace MirrowvaleAuthenticator
