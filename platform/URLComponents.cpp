#include "platform/URLComponents.h"

#include "platform/Text.h"

#include <algorithm>
#include <memory>
#include <uriparser/Uri.h>

namespace MirrowvaleAuthenticator {

namespace {

struct FreeUriMembers {
    void operator()(UriUriA* uri) const { uriFreeUriMembersA(uri); }
};

std::optional<std::string_view> view(const UriTextRangeA& range)
{
    if (range.first == nullptr || range.afterLast == nullptr) {
        return std::nullopt;
    }
    return std::string_view(range.first, static_cast<std::size_t>(range.afterLast - range.first));
}

std::string rawPath(const UriUriA& uri, bool hasAuthority)
{
    std::string path;
    bool needsSlash = hasAuthority || uri.absolutePath != 0;
    for (const auto* segment = uri.pathHead; segment != nullptr; segment = segment->next) {
        if (needsSlash) {
            path += '/';
        }
        path += view(segment->text).value_or(std::string_view());
        needsSlash = true;
    }
    return path;
}

std::optional<URLComponents::QueryItem> decodedItem(std::string_view item)
{
    const auto equals = item.find('=');
    auto name = removingPercentEncoding(item.substr(0, equals));
    if (!name) {
        return std::nullopt;
    }
    if (equals == std::string_view::npos) {
        return URLComponents::QueryItem{std::move(*name), std::nullopt};
    }
    auto value = removingPercentEncoding(item.substr(equals + 1));
    if (!value) {
        return std::nullopt;
    }
    return URLComponents::QueryItem{std::move(*name), std::move(value)};
}

bool appendQueryItems(std::string_view query, std::vector<URLComponents::QueryItem>& items)
{
    constexpr std::size_t ordinaryCount = 8;
    items.reserve(ordinaryCount);
    while (!query.empty()) {
        const auto length = std::min(query.find('&'), query.size());
        if (length > 0) {
            auto item = decodedItem(query.substr(0, length));
            if (!item) {
                return false;
            }
            items.push_back(std::move(*item));
        }
        query.remove_prefix(std::min(length + 1, query.size()));
    }
    return true;
}

} // namespace

std::optional<URLComponents> URLComponents::fromString(std::string_view text)
{
    UriUriA parsed;
    if (uriParseSingleUriExA(&parsed, text.data(), text.data() + text.size(), nullptr) != URI_SUCCESS) {
        return std::nullopt;
    }
    const std::unique_ptr<UriUriA, FreeUriMembers> owner(&parsed);

    URLComponents components;
    components.scheme = view(parsed.scheme);
    if (const auto host = view(parsed.hostText)) {
        auto decoded = removingPercentEncoding(*host);
        components.host = decoded ? std::move(*decoded) : std::string(*host);
    }
    auto path = removingPercentEncoding(rawPath(parsed, components.host.has_value()));
    if (!path) {
        return std::nullopt;
    }
    components.path = std::move(*path);
    if (const auto query = view(parsed.query); query && !appendQueryItems(*query, components.queryItems)) {
        return std::nullopt;
    }
    return components;
}

} // namespace MirrowvaleAuthenticator
