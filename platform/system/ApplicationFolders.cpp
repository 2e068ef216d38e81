#include "platform/system/ApplicationFolders.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace MirrowvaleAuthenticator {

namespace {

std::filesystem::path homeFolderPath()
{
    const char* home = std::getenv("HOME");
    if (home != nullptr && *home == '/') {
        return home;
    }
    const auto* user = getpwuid(geteuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/nonexistent";
}

std::filesystem::path folderPath(const char* variable, const char* belowHome)
{
    const char* value = std::getenv(variable);
    const auto base =
        value != nullptr && *value == '/' ? std::filesystem::path(value) : homeFolderPath() / belowHome;
    return base / "mirrowvale-authenticator";
}

} // namespace

std::filesystem::path dataFolderPath()
{
    return folderPath("XDG_DATA_HOME", ".local/share");
}

std::filesystem::path stateFolderPath()
{
    return folderPath("XDG_STATE_HOME", ".local/state");
}

} // namespace MirrowvaleAuthenticator
