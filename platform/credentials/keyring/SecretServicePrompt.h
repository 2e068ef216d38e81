#pragma once

#include <glib-object.h>

namespace MirrowvaleAuthenticator {

/// The library's own Secret Service, but for the way in which it prompts: it waits until a prompt is
/// answered, or the service has ended or stopped. The library's own way never comes back when the service
/// ends, or answers with another type than expected (0.20.5 and 0.21.7).
GType promptingServiceType();

} // namespace MirrowvaleAuthenticator
