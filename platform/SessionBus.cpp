#include "platform/SessionBus.h"

#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace MirrowvaleAuthenticator {

bool hasSessionBus()
{
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
        address != nullptr && *address != '\0') {
        return std::string_view(address).find("autolaunch:") == std::string_view::npos;
    }
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    struct stat socket { };
    return folder != nullptr && lstat((std::string(folder) + "/bus").c_str(), &socket) == 0
        && S_ISSOCK(socket.st_mode) && socket.st_uid == geteuid();
}

} // namespace MirrowvaleAuthenticator
