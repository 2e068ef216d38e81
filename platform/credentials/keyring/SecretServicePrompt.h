#pragma once

#include <glib-object.h>

namespace MirrowvaleAuthenticator {

/// The library's own Secret Service, but for the way in which it prompts: it waits until a prompt is
/// answered, or the service has ended or stopped. The library's own way never comes back when the service
/// ends, or answers with another type than expected (seen with libsecret 0.20.5).
GType promptingServiceType();

} // namespace MirrowvaleAuthenticator
