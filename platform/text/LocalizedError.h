#pragma once

#include <exception>
#include <string>
#include <utility>

namespace MirrowvaleAuthenticator {

/// An error with a sentence of its own for the user, in English. The add form shows it as it stands; that of
/// a load or save stands in `TokenStore::lastError`, which no screen shows.
class LocalizedError : public std::exception {
public:
    const std::string& errorDescription() const noexcept { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

protected:
    explicit LocalizedError(std::string errorDescription) : description_(std::move(errorDescription)) { }

private:
    std::string description_;
};

/// The sentence that stands for any failure: an error's own description where it has one, else a general one.
std::string localizedDescription(const std::exception& error);

} // namespace MirrowvaleAuthenticator
