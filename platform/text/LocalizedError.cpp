#include "platform/text/LocalizedError.h"

namespace MirrowvaleAuthenticator {

std::string localizedDescription(const std::exception& error)
{
    // The texts of foreign exceptions may quote their input, which may be a secret.
    const auto* ownError = dynamic_cast<const LocalizedError*>(&error);
    return ownError ? ownError->errorDescription() : "The operation couldn’t be completed.";
}

} // namespace MirrowvaleAuthenticator
