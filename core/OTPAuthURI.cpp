#include "core/OTPAuthURI.h"

#include "platform/Text.h"
#include "platform/URLComponents.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

namespace {

using Case = OTPAuthParserError::Case;

/// Parameters in the order of their names.
using QueryMap = std::vector<URLComponents::QueryItem>;

std::string sentence(Case which)
{
    switch (which) {
    case Case::invalidURL:
        return "Enter a valid otpauth:// URI.";
    case Case::missingSecret:
        return "The otpauth URI does not contain a secret.";
    case Case::unsupportedType:
        return "Only TOTP and HOTP otpauth URIs are supported.";
    }
    __builtin_unreachable();
}

void checkScheme(const URLComponents& components)
{
    if (!components.scheme || lowercased(*components.scheme) != "otpauth") {
        throw OTPAuthParserError(Case::invalidURL);
    }
}

AuthToken::Kind kindOf(const URLComponents& components)
{
    const auto kind = kindFromRawValue(components.host ? lowercased(*components.host) : std::string());
    if (!kind) {
        throw OTPAuthParserError(Case::unsupportedType);
    }
    return *kind;
}

/// Parameters by lower-cased name. Names that are the same text under canonical equivalence are the same
/// name.
QueryMap queryMap(std::vector<URLComponents::QueryItem> items)
{
    for (auto& item : items) {
        item.name = canonicalComposition(lowercased(item.name));
    }
    std::ranges::sort(items, {}, &URLComponents::QueryItem::name);
    if (std::ranges::adjacent_find(items, {}, &URLComponents::QueryItem::name) != items.end()) {
        throw OTPAuthParserError(Case::invalidURL);
    }
    return items;
}

std::optional<std::string_view> value(const QueryMap& map, std::string_view name)
{
    const auto found = std::ranges::lower_bound(map, name, {}, &URLComponents::QueryItem::name);
    if (found == map.end() || found->name != name) {
        return std::nullopt;
    }
    return found->value ? std::string_view(*found->value) : std::string_view();
}

std::string labelOf(std::string_view path)
{
    const auto first = path.find_first_not_of('/');
    if (first == std::string_view::npos) {
        return {};
    }
    const auto stripped = path.substr(first, path.find_last_not_of('/') - first + 1);
    auto decoded = removingPercentEncoding(stripped);
    return decoded ? std::move(*decoded) : std::string(stripped);
}

struct LabelParts {
    std::string_view first;
    std::string_view second;
};

/// The label's two parts around the first ":" that closes a non-empty piece; nothing where one part is empty.
std::optional<LabelParts> splitLabel(std::string_view label)
{
    std::size_t pieceStart = 0;
    std::size_t position = 0;
    for (const auto character : characters(label)) {
        const auto end = position + character.size();
        if (character == ":") {
            if (position > pieceStart) {
                const LabelParts parts{label.substr(pieceStart, position - pieceStart), label.substr(end)};
                return parts.second.empty() ? std::nullopt : std::optional(parts);
            }
            pieceStart = end;
        }
        position = end;
    }
    return std::nullopt;
}

/// A decimal number with an optional sign and nothing else, or nothing where it does not fit.
template <typename Number>
std::optional<Number> decimal(std::string_view text)
{
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::optional<std::uint64_t> unsignedDecimal(std::string_view text)
{
    if (text.size() > 1 && text.starts_with('-')
        && text.find_first_not_of('0', 1) == std::string_view::npos) {
        return 0;
    }
    return decimal<std::uint64_t>(text);
}

} // namespace

OTPAuthParserError::OTPAuthParserError(Case failure) : LocalizedError(sentence(failure)), which(failure)
{
}

AuthToken parseOTPAuthURI(std::string_view text)
{
    auto components = URLComponents::fromString(text);
    if (!components) {
        throw OTPAuthParserError(Case::invalidURL);
    }
    checkScheme(*components);
    AuthToken token;
    token.kind = kindOf(*components);
    const auto query = queryMap(std::move(components->queryItems));
    const auto secret = value(query, "secret").value_or("");
    if (secret.empty()) {
        throw OTPAuthParserError(Case::missingSecret);
    }

    const auto label = labelOf(components->path);
    const auto parts = splitLabel(label);
    const auto issuer = value(query, "issuer").value_or(parts ? parts->first : std::string_view());

    token.id = UUID::random();
    token.issuer = trimmed(issuer);
    token.account = trimmed(parts ? parts->second : label);
    token.secretBase32 = uppercased(removingSpaces(secret));
    token.algorithm = algorithmFromRawValue(uppercased(value(query, "algorithm").value_or("SHA1")))
                          .value_or(AuthToken::Algorithm::sha1);
    token.digits = decimal<std::int64_t>(value(query, "digits").value_or("")).value_or(6);
    token.period = decimal<std::int64_t>(value(query, "period").value_or("")).value_or(30);
    token.counter = unsignedDecimal(value(query, "counter").value_or("")).value_or(0);
    token.createdAt = Date::now();
    return token;
}

} // namespace MirrowvaleAuthenticator
