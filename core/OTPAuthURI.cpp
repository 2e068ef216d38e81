#include "core/OTPAuthURI.h"

#include "platform/text/Text.h"
#include "platform/text/URLComponents.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

using Case = OTPAuthParserError::Case;

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

/// Whether a text is a lower-case word of ASCII, regardless of case. No character beyond ASCII has a letter
/// of the words below for its lower case.
bool isWord(std::string_view text, std::string_view word)
{
    return std::ranges::equal(text, word, {}, [](char byte) {
        return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
    });
}

AuthToken::Kind kindOf(const URLComponents& components)
{
    for (const auto kind : allKinds) {
        if (isWord(components.host.value_or(""), rawValue(kind))) {
            return kind;
        }
    }
    throw OTPAuthParserError(Case::unsupportedType);
}

/// A parameter's value, regardless of its name's case; nothing where there is none.
std::optional<std::string_view> parameter(const URLComponents& components, std::string_view name)
{
    std::optional<std::string_view> value;
    for (const auto& item : components.queryItems) {
        if (!isWord(item.name, name)) {
            continue;
        }
        if (value || !item.value) {
            throw OTPAuthParserError(Case::invalidURL);
        }
        value = item.value;
    }
    return value;
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
    for (const auto character : characters(label)) {
        if (character != ":") {
            continue;
        }
        const auto colon = static_cast<std::size_t>(character.data() - label.data());
        const LabelParts parts{label.substr(pieceStart, colon - pieceStart), label.substr(colon + 1)};
        if (!parts.first.empty()) {
            return parts.second.empty() ? std::nullopt : std::optional(parts);
        }
        pieceStart = colon + 1;
    }
    return std::nullopt;
}

/// A decimal number with an optional sign and nothing else, or nothing where it does not fit; "-0" does not
/// fit what has no sign.
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

} // namespace

OTPAuthParserError::OTPAuthParserError(Case which) : LocalizedError(sentence(which)), which_(which)
{
}

AuthToken parseOTPAuthURI(std::string_view text)
{
    return parseOTPAuthURI(text, UUID::random(), Date::now());
}

AuthToken parseOTPAuthURI(std::string_view text, const UUID& id, Date createdAt)
{
    const auto components = URLComponents::fromString(text);
    if (!components || !isWord(components->scheme.value_or(""), "otpauth")) {
        throw OTPAuthParserError(Case::invalidURL);
    }
    AuthToken token;
    token.id = id;
    token.createdAt = createdAt;
    token.kind = kindOf(*components);
    const auto label = labelOf(components->path);
    const auto parts = splitLabel(label);
    const auto valueOf = [&](const char* name) { return parameter(*components, name).value_or(""); };
    token.secretBase32 = uppercased(removingSpaces(valueOf("secret")));
    token.issuer = trimmed(parameter(*components, "issuer").value_or(parts ? parts->first : ""));
    token.account = trimmed(parts ? parts->second : label);
    token.algorithm = algorithmFromRawValue(uppercased(valueOf("algorithm"))).value_or(token.algorithm);
    token.digits = decimal<std::int64_t>(valueOf("digits")).value_or(token.digits);
    token.period = decimal<std::int64_t>(valueOf("period")).value_or(token.period);
    token.counter = decimal<std::uint64_t>(valueOf("counter")).value_or(token.counter);
    if (valueOf("secret").empty()) { // judged last: a parameter that cannot be read comes first
        throw OTPAuthParserError(Case::missingSecret);
    }
    return token;
}

} // namespace MirrowvaleAuthenticator
