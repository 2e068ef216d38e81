#pragma once

#include <filesystem>

namespace MirrowvaleAuthenticator {

/// This application's own folders, by the XDG base directory rules; a relative path in a variable is ignored.
std::filesystem::path dataFolderPath(); ///< $XDG_DATA_HOME/mirrowvale-authenticator
std::filesystem::path stateFolderPath(); ///< $XDG_STATE_HOME/mirrowvale-authenticator

} // namespace MirrowvaleAuthenticator
