#pragma once

#include "platform/crypto/SecretMemory.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace MirrowvaleAuthenticator {

enum class HashFunction { sha1, sha256, sha512 };

/// A message authentication code (RFC 2104) of 20, 32 or 64 bytes; wiped when it goes.
class AuthenticationCode {
public:
    AuthenticationCode(HashFunction hash, std::span<const std::uint8_t> key,
                       std::span<const std::uint8_t> message);
    AuthenticationCode(const AuthenticationCode&) = delete;
    AuthenticationCode& operator=(const AuthenticationCode&) = delete;

    std::span<const std::uint8_t> bytes() const { return {storage_->data(), size_}; }

private:
    Wiped<std::array<std::uint8_t, 64>> storage_;
    std::size_t size_;
};

} // namespace MirrowvaleAuthenticator
