#include "platform/text/URLComponents.h"

#include "platform/text/Text.h"

#include <algorithm>
#include <memory>
#include <span>
#include <uriparser/Uri.h>

namespace MirrowvaleAuthenticator {

namespace {

struct FreeUriMembers {
    void operator()(UriUriA* uri) const { uriFreeUriMembersA(uri); }
};

/// The piece of `text` that the library found. Where it is empty, uriparser (0.9.7) points at a constant of
/// its own, not into the text.
std::optional<std::span<char>> piece(std::span<char> text, const UriTextRangeA& range)
{
    if (range.first == nullptr || range.afterLast == nullptr) {
        return std::nullopt;
    }
    if (range.first == range.afterLast) {
        return std::span<char>();
    }
    return text.subspan(static_cast<std::size_t>(range.first - text.data()),
                        static_cast<std::size_t>(range.afterLast - range.first));
}

std::string_view view(std::span<const char> text)
{
    return {text.data(), text.size()};
}

std::span<char> takeFront(std::size_t length, std::span<char>& text)
{
    const auto front = text.first(length);
    text = text.subspan(length);
    return front;
}

std::span<char> takeUpTo(char end, std::span<char>& text)
{
    return takeFront(std::min(view(text).find(end), text.size()), text);
}

/// Takes the path off a URI that is known to be one: what lies between the scheme or the authority and the
/// query or the fragment.
std::span<char> takePath(bool hasAuthority, std::span<char>& text)
{
    const auto lengthBefore = [&](auto isEnd) {
        return static_cast<std::size_t>(std::ranges::find_if(text, isEnd) - text.begin());
    };
    const auto endsPath = [](char byte) { return byte == '?' || byte == '#'; };
    if (hasAuthority) {
        takeFront(std::string_view("//").size(), text);
        takeFront(lengthBefore([&](char byte) { return byte == '/' || endsPath(byte); }), text);
    }
    return takeFront(lengthBefore(endsPath), text);
}

void appendQueryItems(std::span<char> query, std::vector<URLComponents::QueryItem>& items)
{
    constexpr std::size_t ordinaryCount = 8;
    items.reserve(ordinaryCount);
    while (!query.empty()) {
        auto value = takeUpTo('&', query);
        const auto name = removePercentEncoding(takeUpTo('=', value));
        if (name && !name->empty()) {
            items.push_back({*name, removePercentEncoding(value.subspan(value.empty() ? 0 : 1))});
        }
        query = query.subspan(query.empty() ? 0 : 1);
    }
}

} // namespace

std::optional<URLComponents> URLComponents::fromString(std::string_view text)
{
    URLComponents components;
    components.text_ = std::make_unique_for_overwrite<char[]>(text.size());
    std::ranges::copy(text, components.text_.get());
    std::span<char> rest(components.text_.get(), text.size());

    UriUriA parsed;
    if (uriParseSingleUriExA(&parsed, rest.data(), rest.data() + rest.size(), nullptr) != URI_SUCCESS) {
        return std::nullopt;
    }
    const std::unique_ptr<UriUriA, FreeUriMembers> owner(&parsed);

    const auto host = piece(rest, parsed.hostText);
    const auto query = piece(rest, parsed.query).value_or(std::span<char>());
    if (const auto scheme = piece(rest, parsed.scheme)) {
        components.scheme = view(*scheme);
        rest = rest.subspan(scheme->size() + 1);
    }
    const auto path = removePercentEncoding(takePath(host.has_value(), rest));
    if (!path) {
        return std::nullopt;
    }
    components.host = host ? removePercentEncoding(*host) : std::nullopt;
    components.path = *path;
    appendQueryItems(query, components.queryItems);
    return components;
}

} // namespace MirrowvaleAuthenticator
