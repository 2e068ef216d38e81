#pragma once

#include <exception>
#include <string>
#include <utility>

namespace MirrowvaleAuthenticator {

/// An error with a sentence of its own for the user, in English. The add form shows it; that of a load or
/// save is in `TokenStore::lastError`, which no screen shows.
class LocalizedError : public std::exception {
public:
    const std::string& errorDescription() const noexcept { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

protected:
    explicit LocalizedError(std::string errorDescription) : description_(std::move(errorDescription)) { }

private:
    std::string description_;
};

/// A sentence for any failure: an error's own where it has one, else a general one. The texts of foreign
/// exceptions may quote their input, which may be a secret.
inline std::string localizedDescription(const std::exception& error)
{
    const auto* ownError = dynamic_cast<const LocalizedError*>(&error);
    return ownError ? ownError->errorDescription() : "The operation couldn’t be completed.";
}

} // namespace MirrowvaleAuthenticator
