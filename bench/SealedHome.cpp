#include "bench/SealedHome.h"

#include <cstdlib>

namespace MirrowvaleAuthenticator {

void useHome(const std::filesystem::path& folder)
{
    setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
    setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
}

void useSealedHome(const std::filesystem::path& folder)
{
    useHome(folder);
    unsetenv("DBUS_SESSION_BUS_ADDRESS"); // without a bus there is no keyring
}

} // namespace MirrowvaleAuthenticator
