#include "platform/URLComponents.h"

#include <gtest/gtest.h>

namespace MirrowvaleAuthenticator {

using namespace std::string_literals;

TEST(URLComponents, takesAReferenceApart)
{
    // clang-format off
    using Maybe = std::optional<std::string>;
    const struct { std::string_view text; Maybe scheme, host; std::string path, items; } table[] = {
        {"", {}, {}, "", ""}, {"a", {}, {}, "a", ""}, {"//h/p?", {}, "h", "/p", ""}, {"s:", "s", {}, "", ""},
        {"S+1.-:p/q", "S+1.-", {}, "p/q", ""}, {"s:/p", "s", {}, "/p", ""}, {"s:///p", "s", "", "/p", ""},
        {"s://u:p@H:99/p?q#f", "s", "H", "/p", "[q]"}, {"s://h?a=#c=2", "s", "h", "", "[a=]"},
        {"s://h/a%2Fb%20%C3%A9//../c", "s", "h", "/a/b é//../c", ""},
        {"s://h?b=1&a&%C3%89%3D=x=%26+/?", "s", "h", "", "[b=1][a][É==x=&+/?]"},
    };
    // clang-format on
    for (const auto& row : table) {
        SCOPED_TRACE(row.text);
        const auto components = URLComponents::fromString(row.text);
        ASSERT_TRUE(components.has_value());
        EXPECT_EQ(components->scheme, row.scheme);
        EXPECT_EQ(components->host, row.host);
        EXPECT_EQ(components->path, row.path);
        std::string items;
        for (const auto& [name, value] : components->queryItems) {
            items += "[" + name + (value ? "=" + *value : "") + "]";
        }
        EXPECT_EQ(items, row.items);
    }
}

TEST(URLComponents, refusesWhatAURIMayNotHold)
{
    for (const auto* part :
         {" ",    "\"", "<", ">",    "\\", "^",  "`",   "{",    "|",   "}",      "\x7f",
          "\x01", "\n", "é", "\xff", "%",  "%4", "%4g", "%%41", "%FF", "%C3%28", "%ED%A0%80"}) {
        SCOPED_TRACE(part);
        EXPECT_FALSE(URLComponents::fromString("s://h/"s + part).has_value());
        EXPECT_FALSE(URLComponents::fromString("s:a"s + part + "!").has_value());
        EXPECT_FALSE(URLComponents::fromString("s://h?a="s + part + "&b").has_value());
        EXPECT_FALSE(URLComponents::fromString("s://h?"s + part + "=a").has_value());
    }
    for (const auto& text : {"s://h h"s, "s://h/[a]"s, "s://h?[a]"s, "s://h#[a]"s, "s://h#a#b"s, "s://h:x/"s,
                             "s://[::1"s, "s://[:::1]/"s, "1s://h"s, ":a"s, "s p://h"s, "s://h/\0"s,
                             "\0s://h/"s, "s://a@b@c/"s, "s://h#%zz"s, "s://%g1/"s}) {
        EXPECT_FALSE(URLComponents::fromString(text).has_value()) << text;
    }
}

} // namespace MirrowvaleAuthenticator
