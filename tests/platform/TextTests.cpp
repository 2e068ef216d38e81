#include "platform/text/Text.h"

#include "platform/text/UUID.h"

#include <clocale>
#include <gtest/gtest.h>
#include <set>

namespace MirrowvaleAuthenticator {

using namespace std::string_literals;
using namespace std::string_view_literals;

TEST(Text, mapsCaseInFullAndWithoutLocale)
{
    std::setlocale(LC_ALL, "");
    // clang-format off
    const struct { std::string_view text, upper, lower; } table[] = {
        {"", "", ""}, {"title iI", "TITLE II", "title ii"}, {"iIé", "IIÉ", "iié"},
        {"straße", "STRASSE", "straße"},
        {"ﬁ", "FI", "ﬁ"}, {"ſ", "S", "ſ"}, {"ı", "I", "ı"}, {"İ", "İ", "i\u0307"}, {"ŉ", "ʼN", "ŉ"},
        {"ΟΔΟΣ", "ΟΔΟΣ", "οδος"}, {"ΐ", "\u0399\u0308\u0301", "ΐ"}, {"\u212A", "\u212A", "k"},
        {"e\u0301", "E\u0301", "e\u0301"}, {"a\0b"sv, "A\0B"sv, "a\0b"sv},
        {"a\xffZ", "A\uFFFDZ", "a\uFFFDz"},
    };
    // clang-format on
    for (const auto& row : table) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(uppercased(row.text), row.upper);
        EXPECT_EQ(lowercased(row.text), row.lower);
    }
}

TEST(Text, trimsExactlyTheWhiteSpaceAndNewlineSet)
{
    for (const auto* space : {" ", "\t", "\n", "\v", "\f", "\r", "\u0085", "\u00A0", "\u1680", "\u2000",
                              "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"}) {
        const auto around = space + "a"s + space + "b"s + space + " "s + space;
        EXPECT_EQ(trimmed(around), "a"s + space + "b");
        EXPECT_EQ(trimmed(space), "");
    }
    for (const auto kept : {"\u200B"sv, "\uFEFF"sv, "\u180E"sv, "\x1c"sv, "\x1f"sv, "\x08"sv, "\0"sv,
                            "\x85"sv, "\xa0"sv, " \u0301"sv.substr(1)}) {
        EXPECT_EQ(trimmed(" " + std::string(kept) + "\n"), kept);
    }
}

TEST(Text, splitsIntoUserPerceivedCharacters)
{
    // clang-format off
    const std::vector<std::vector<std::string_view>> table = {
        {}, {"a", "b"}, {"a", "\r\n", "b"}, {"\n", "\r"}, {"\r", "\r\n", "\n"}, {"\r\n", "\u0301"},
        {"e\u0301\u0323", "x"}, {"\u0301", "a"}, {"🇩🇪", "🇫🇷"}, {"👩‍👩‍👧", "."}, {"👍🏽"},
        {"\u1112\u1161\u11AB", "한"}, {"\0"sv, "=\u20E3"sv},
    };
    // clang-format on
    for (const auto& expected : table) {
        std::string text;
        for (const auto character : expected) {
            text += character;
        }
        SCOPED_TRACE(text);
        EXPECT_EQ(characters(text), expected);
    }
}

// The fuzz target of the stored form checks which texts are identifiers.
TEST(UUID, makesDistinctRandomIdentifiers)
{
    std::set<UUID> seen;
    for (int round = 0; round < 1000; ++round) {
        const auto id = UUID::random();
        EXPECT_TRUE(seen.insert(id).second);
        EXPECT_EQ(id.bytes[6] >> 4, 4) << "version";
        EXPECT_EQ(id.bytes[8] >> 6, 2) << "variant";
        EXPECT_EQ(UUID::fromString(id.string()), id);
    }
}

} // namespace MirrowvaleAuthenticator
