#pragma once

#include <filesystem>
#include <system_error>

namespace MirrowvaleAuthenticator {

/// Whether the kernel offers a device to render with. Asking for a context instead would cost the time that
/// the answer is meant to save.
inline bool hasRenderDevice()
{
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/dri", error)) {
        if (entry.path().filename().string().starts_with("renderD")) {
            return true;
        }
    }
    return false;
}

} // namespace MirrowvaleAuthenticator
