#include "bench/SealedHome.h"

#include "platform/PrivateFolder.h"

#include <cstdlib>

namespace MirrowvaleAuthenticator {

void useSealedHome(const std::filesystem::path& folder)
{
    setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
    setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);
    PrivateFolder::openOrCreate(stateFolderPath())
        .write("app.mirrowvale.authenticator.tokens.location", "sealed files\n");
}

} // namespace MirrowvaleAuthenticator
