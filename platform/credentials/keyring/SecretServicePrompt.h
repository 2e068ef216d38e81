#pragma once

#include <libsecret/secret.h>

namespace MirrowvaleAuthenticator {

/// Shows a prompt of the Secret Service and waits until it is answered, or the service has ended or stopped.
/// The library's own way of waiting never comes back when the service ends or answers with another type than
/// expected.
///
/// @param expected  the type of the result that the caller can use; null for any
/// @param error     `G_IO_ERROR_CANCELLED` where the user dismissed the prompt
/// @returns the prompt's result, owned by the caller, or null with `error` set
GVariant* resultOfPrompt(SecretService& service, SecretPrompt& prompt, const GVariantType* expected,
                         GCancellable* cancellable, GError** error);

} // namespace MirrowvaleAuthenticator
