#include "core/Base32.h"

#include <algorithm>
#include <gtest/gtest.h>

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

} // namespace

TEST(Base32, decodes)
{
    using namespace std::string_literals;
    // clang-format off
    const struct { std::string_view text; std::string bytes; } table[] = {
        {"MY======", "f"}, {"MZXQ====", "fo"}, {"MZXW6===", "foo"}, {"MZXW6YQ=", "foob"},
        {"MZXW6YTB", "fooba"}, {"MZXW6YTBOI======", "foobar"}, {"mzxw 6ytb oi", "foobar"},
        {"=M Z=XW6==YTB OI ", "foobar"}, {"MZXW6YTBOJ", "foobar"}, {"", ""}, {" = == ", ""}, {"A", ""},
        {"AB", "\0"s},
        {"abcdefghijklmnopqrstuvwxyz234567", "\x00\x44\x32\x14\xc7\x42\x54\xb6\x35\xcf\x84\x65\x3a\x56\xd7\xc6\x75\xbe\x77\xdf"s},
        {"\u212A5", "\x57"},
        {"\u017F7", "\x97"}, {"ß7", "\x94"}, {"ﬁ", "\x2a"},
        {"ﬃ7", "\x29\x51"}, {"ı4", "\x47"},
        {"ßßßßßßßß", "\x94\xa5\x29\x4a\x52\x94\xa5\x29\x4a\x52"},
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

} // namespace MirrowvaleAuthenticator
