#pragma once

#include <glib.h>

namespace MirrowvaleAuthenticator {

/// The place where the Secret Service, the session bus or their libraries report an error.
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

} // namespace MirrowvaleAuthenticator
