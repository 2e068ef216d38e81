#include "core/Base32.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace MirrowvaleAuthenticator {

namespace {

std::string decoded(std::string_view text)
{
    const auto bytes = decodeBase32(text);
    std::vector<std::uint8_t> output(base32DecodedCapacity(text)); // no byte more than promised
    output.resize(decodeBase32(text, output));
    EXPECT_TRUE(std::ranges::equal(bytes, output));
    return {bytes.begin(), bytes.end()};
}

/// The plain definition, for text of the alphabet alone.
std::string decodedBitByBit(std::string_view text)
{
    std::string bits;
    for (const auto character : text) {
        for (std::size_t bit = 5; bit-- > 0;) {
            bits += (base32Alphabet.find(character) >> bit & 1) != 0 ? '1' : '0';
        }
    }
    std::string bytes;
    for (std::size_t start = 0; start + 8 <= bits.size(); start += 8) {
        bytes += static_cast<char>(std::stoi(bits.substr(start, 8), nullptr, 2));
    }
    return bytes;
}

} // namespace

TEST(Base32, decodes)
{
    using namespace std::string_literals;
    // clang-format off
    const struct { std::string_view text; std::string bytes; } table[] = {
        {"MY======", "f"}, {"MZXQ====", "fo"}, {"MZXW6===", "foo"}, {"MZXW6YQ=", "foob"},
        {"MZXW6YTB", "fooba"}, {"MZXW6YTBOI======", "foobar"}, {"mzxw 6ytb oi", "foobar"},
        {"=M Z=XW6==YTB OI ", "foobar"}, {"MZXW6YTBOJ", "foobar"}, {"", ""}, {" = == ", ""}, {"A", ""},
        {"AB", "\0"s}, {"77777777", "\xff\xff\xff\xff\xff"}, {"\u212A5", decodedBitByBit("K5")},
        {"\u017F7", decodedBitByBit("S7")}, {"ß7", decodedBitByBit("SS7")}, {"ﬁ", decodedBitByBit("FI")},
        {"ﬃ7", decodedBitByBit("FFI7")}, {"ı4", decodedBitByBit("I4")},
        {"ßßßßßßßß", decodedBitByBit("SSSSSSSSSSSSSSSS")},
    };
    // clang-format on
    for (const auto& row : table) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(decoded(row.text), row.bytes);
    }
}

TEST(Base32, namesTheWholeFirstCharacterThatIsNotBase32)
{
    using namespace std::string_view_literals;
    // clang-format off
    const struct { std::string_view text, character; } table[] = {
        {"JBSWY3DPEHPK3PX1", "1"}, {"0", "0"}, {"A8", "8"}, {"MY9!?", "9"}, {"AAAA-AAAA", "-"},
        {"MY\t", "\t"}, {"MY\nMY", "\n"}, {"MY\r\nMY", "\r\n"}, {"MY\u00A0MY", "\u00A0"}, {"aé", "É"},
        {"e\u0301", "E\u0301"}, {"MYa\u0301\u0323x", "A\u0301\u0323"}, {"\u212A\u0301", "\u212A\u0301"},
        {"A =\u0301B", "A\u0301"}, {"A =\u200D", "A\u200D"}, {"👩‍👩‍👧A", "👩‍👩‍👧"}, {"ŉ", "ʼ"}, {"Ａ", "Ａ"},
        {"A\0"sv, "\0"sv}, {"A\xff", "\uFFFD"},
    };
    // clang-format on
    for (const auto& row : table) {
        SCOPED_TRACE(testing::PrintToString(row.text));
        try {
            decodeBase32(row.text);
            ADD_FAILURE() << "decoded";
        } catch (const Base32Error& error) {
            EXPECT_EQ(error.invalidCharacter(), row.character);
            EXPECT_EQ(error.errorDescription(), "Invalid Base32 character: " + std::string(row.character));
            EXPECT_EQ(localizedDescription(error), error.errorDescription());
        }
    }
}

TEST(Base32, generatedTextDecodesAsDefined)
{
    std::mt19937 random(4648);
    for (std::size_t length = 0; length < 300; ++length) {
        std::string plain;
        std::string written;
        for (std::size_t index = 0; index < length; ++index) {
            const auto character = base32Alphabet[random() % 32];
            plain += character;
            written += std::string(random() % 3, " ="[random() % 2]);
            const bool isLower = random() % 2 == 0 && character >= 'A';
            written += isLower ? static_cast<char>(character | 0x20) : character;
        }
        EXPECT_EQ(decoded(written), decodedBitByBit(plain));
    }
}

} // namespace MirrowvaleAuthenticator
