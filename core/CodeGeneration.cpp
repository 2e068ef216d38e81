#include "core/CodeGeneration.h"

#include "core/Base32.h"
#include "platform/crypto/HMAC.h"
#include "platform/crypto/SecretMemory.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace MirrowvaleAuthenticator {

namespace {

std::string sentence(OTPError::Case which)
{
    switch (which) {
    case OTPError::Case::invalidSecret:
        return "The token secret is not valid Base32.";
    case OTPError::Case::unsupportedDigits:
        return "Only 6, 7, and 8 digit OTP codes are supported.";
    case OTPError::Case::instantOutOfRange:
        return "There is no code for this date.";
    }
    __builtin_unreachable();
}

/// The decoded secret, on the stack for every ordinary length, wiped when it goes.
class Key {
public:
    explicit Key(std::string_view secretBase32)
    {
        const auto capacity = base32DecodedCapacity(secretBase32);
        if (capacity > small_->size()) {
            large_ = decodeBase32(secretBase32);
        } else {
            size_ = decodeBase32(secretBase32, *small_);
        }
    }

    std::span<const std::uint8_t> bytes() const
    {
        return large_.empty() ? std::span<const std::uint8_t>(small_->data(), size_) : large_;
    }

private:
    Wiped<std::array<std::uint8_t, 128>> small_;
    std::size_t size_ = 0;
    SecretBytes large_;
};

std::array<std::uint8_t, 8> bigEndian(std::uint64_t number)
{
    std::array<std::uint8_t, 8> bytes{};
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte, number >>= 8) {
        *byte = static_cast<std::uint8_t>(number);
    }
    return bytes;
}

/// Dynamic truncation (RFC 4226, section 5.3): 31 bits of the MAC.
std::uint32_t truncated(std::span<const std::uint8_t> mac)
{
    const std::size_t offset = mac.back() & 0x0f;
    return static_cast<std::uint32_t>(mac[offset] & 0x7f) << 24
        | static_cast<std::uint32_t>(mac[offset + 1]) << 16 | static_cast<std::uint32_t>(mac[offset + 2]) << 8
        | static_cast<std::uint32_t>(mac[offset + 3]);
}

std::string lastDigits(std::uint32_t number, std::int64_t count)
{
    std::string text(static_cast<std::size_t>(count), '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, number /= 10) {
        *digit = static_cast<char>('0' + number % 10);
    }
    return text;
}

std::int64_t timeStep(const AuthToken& token)
{
    return std::max<std::int64_t>(token.period, 1);
}

std::uint64_t stepCount(const AuthToken& token, Date instant)
{
    const double steps = std::floor(instant.secondsSince1970() / static_cast<double>(timeStep(token)));
    constexpr double limit = 18446744073709551616.0; // 2 to the 64th
    if (!(steps >= 0 && steps < limit)) { // false for NaN, too
        throw OTPError(OTPError::Case::instantOutOfRange);
    }
    return static_cast<std::uint64_t>(steps);
}

} // namespace

OTPError::OTPError(Case which) : LocalizedError(sentence(which)), which_(which)
{
}

std::string generateOTP(std::string_view secretBase32, std::uint64_t counter, AuthToken::Algorithm algorithm,
                        std::int64_t digits)
{
    if (digits < 6 || digits > 8) {
        throw OTPError(OTPError::Case::unsupportedDigits);
    }
    const Key key(secretBase32);
    if (key.bytes().empty()) {
        throw OTPError(OTPError::Case::invalidSecret);
    }
    const AuthenticationCode mac(algorithm, key.bytes(), bigEndian(counter));
    return lastDigits(truncated(mac.bytes()), digits);
}

std::string currentCode(const AuthToken& token, Date instant)
{
    const auto counter = token.kind == AuthToken::Kind::hotp ? token.counter : stepCount(token, instant);
    return generateOTP(token.secretBase32, counter, token.algorithm, token.digits);
}

std::int64_t secondsRemaining(const AuthToken& token, Date instant)
{
    if (token.kind == AuthToken::Kind::hotp) {
        return 0;
    }
    const auto step = timeStep(token);
    const double seconds = instant.secondsSince1970();
    constexpr double limit = 9223372036854775808.0; // 2 to the 63rd
    const bool fits = seconds >= -limit && seconds < limit;
    const auto intoStep = fits ? static_cast<std::int64_t>(seconds) % step : 0;
    return intoStep >= 0 ? step - intoStep : -intoStep;
}

} // namespace MirrowvaleAuthenticator
