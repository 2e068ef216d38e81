#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The pieces of a URI reference (RFC 3986), percent-decoded once, to UTF-8. They last as long as this does.
struct URLComponents {
    struct QueryItem {
        std::string_view name;
        std::optional<std::string_view> value; ///< empty without an "="; absent where it does not decode
    };

    std::optional<std::string_view> scheme; ///< as written
    std::optional<std::string_view> host; ///< absent without an authority, or where it does not decode
    std::string_view path;
    std::vector<QueryItem> queryItems; ///< in order, those with a name that decodes; "+" stays "+"

    /// Parses strictly: nothing for a text that RFC 3986 does not allow, or whose path does not decode.
    static std::optional<URLComponents> fromString(std::string_view text);

private:
    std::unique_ptr<char[]> text_; ///< in which each piece is decoded in place
};

} // namespace MirrowvaleAuthenticator
