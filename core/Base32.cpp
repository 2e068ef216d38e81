#include "core/Base32.h"

#include "platform/text/Text.h"

#include <array>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

/// The value of a byte of ASCII text, 0 to 31, or one of these.
constexpr std::uint8_t ignored = 0xfe;
constexpr std::uint8_t unknown = 0xff;

constexpr std::array<std::uint8_t, 256> makeByteValues()
{
    std::array<std::uint8_t, 256> values{};
    values.fill(unknown);
    for (std::size_t value = 0; value < base32Alphabet.size(); ++value) {
        const auto character = static_cast<unsigned char>(base32Alphabet[value]);
        values[character] = static_cast<std::uint8_t>(value);
        if (character >= 'A') {
            values[character + 'a' - 'A'] = static_cast<std::uint8_t>(value);
        }
    }
    values[' '] = ignored;
    values['='] = ignored;
    return values;
}

constexpr auto byteValues = makeByteValues();

/// Collects 5-bit values into bytes.
class BitBuffer {
public:
    explicit BitBuffer(std::span<std::uint8_t> memory) : output_(memory) { }

    void append(std::uint8_t value)
    {
        bits_ = bits_ << 5 | value;
        pending_ += 5;
        if (pending_ >= 8) {
            pending_ -= 8;
            output_[written_++] = static_cast<std::uint8_t>(bits_ >> pending_);
        }
    }

    std::size_t count() const { return written_; }

private:
    std::span<std::uint8_t> output_;
    std::size_t written_ = 0;
    std::uint64_t bits_ = 0;
    unsigned pending_ = 0;
};

std::uint8_t valueOf(std::string_view character)
{
    // Several scalars may be one alphabet character (KELVIN SIGN is "K"), never the other way round.
    const auto composed = canonicalComposition(character);
    const auto position = composed.size() == 1 ? base32Alphabet.find(composed[0]) : std::string_view::npos;
    return position == std::string_view::npos ? unknown : static_cast<std::uint8_t>(position);
}

std::size_t decodeByCharacters(std::string_view text, std::span<std::uint8_t> output)
{
    Wiped<std::string> cleaned(removingSpaces(uppercased(text)));
    std::erase(*cleaned, '=');
    BitBuffer buffer(output);
    for (const auto character : characters(*cleaned)) {
        const auto value = valueOf(character);
        if (value == unknown) {
            throw Base32Error(std::string(character));
        }
        buffer.append(value);
    }
    return buffer.count();
}

} // namespace

Base32Error::Base32Error(std::string invalidCharacter)
    : LocalizedError("Invalid Base32 character: " + invalidCharacter),
      invalidCharacter_(std::move(invalidCharacter))
{
}

std::size_t decodeBase32(std::string_view text, std::span<std::uint8_t> output)
{
    BitBuffer buffer(output);
    for (const char byte : text) {
        const auto value = byteValues[static_cast<unsigned char>(byte)];
        if (value == unknown) {
            // Whether and how this fails depends on the whole character that the byte belongs to.
            return decodeByCharacters(text, output);
        }
        if (value != ignored) {
            buffer.append(value);
        }
    }
    return buffer.count();
}

SecretBytes decodeBase32(std::string_view text)
{
    SecretBytes bytes(base32DecodedCapacity(text));
    bytes.resize(decodeBase32(text, bytes));
    return bytes;
}

} // namespace MirrowvaleAuthenticator
