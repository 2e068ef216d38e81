#pragma once

#include "platform/credentials/Status.h"

#include <libsecret/secret.h>
#include <memory>

namespace MirrowvaleAuthenticator {

/// Gives an object of the Secret Service's library back.
struct Release {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GHashTable* table) const { g_hash_table_unref(table); }
    void operator()(SecretValue* value) const { secret_value_unref(value); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Release>;

/// The place where the library reports an error.
class ErrorReport {
public:
    ErrorReport() = default;
    ~ErrorReport() { g_clear_error(&error_); }
    ErrorReport(const ErrorReport&) = delete;
    ErrorReport& operator=(const ErrorReport&) = delete;

    operator GError**() { return &error_; }

    bool saysLocked() const;
    bool saysMissing() const; ///< there is no such object

    /// @throws StatusError  the error's status, where there is one
    void require() const;

private:
    GError* error_ = nullptr;
};

/// A connection to the Secret Service of the user's session, which has a bus.
/// @throws StatusError  `errSecNotAvailable` where the bus cannot be reached, else what the service's failure
/// means
Owned<SecretService> connectToSecretService(GCancellable* cancellable);

} // namespace MirrowvaleAuthenticator
