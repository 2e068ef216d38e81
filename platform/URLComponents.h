#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The pieces of a URI reference (RFC 3986), percent-decoded once.
struct URLComponents {
    struct QueryItem {
        std::string name;
        std::optional<std::string> value; ///< absent where the item has no "="
    };

    std::optional<std::string> scheme; ///< as written
    std::optional<std::string> host; ///< absent without an authority; may be empty
    std::string path;
    std::vector<QueryItem> queryItems; ///< in order, without empty ones ("&&"); "+" stays "+"

    /// Parses strictly: nothing for a text that RFC 3986 does not allow, or whose percent-escapes in the path
    /// or the query do not decode to UTF-8.
    static std::optional<URLComponents> fromString(std::string_view text);
};

} // namespace MirrowvaleAuthenticator
