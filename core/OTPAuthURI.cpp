#include "core/OTPAuthURI.h"

#include "platform/text/Text.h"
#include "platform/text/URLComponents.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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

/// Values of the parameters that play a part, by lower-cased name. Whatever else stands in a query is
/// ignored.
class QueryMap {
public:
    explicit QueryMap(const std::vector<URLComponents::QueryItem>& items)
    {
        for (const auto& item : items) {
            const auto parameter = std::ranges::find_if(
                parameters_, [&](const auto& known) { return isSame(known.name, item.name); });
            if (parameter == parameters_.end()) {
                continue;
            }
            if (parameter->value || !item.value) {
                throw OTPAuthParserError(Case::invalidURL);
            }
            parameter->value = item.value;
        }
    }

    std::optional<std::string_view> operator[](std::string_view name) const
    {
        return std::ranges::find(parameters_, name, &Parameter::name)->value;
    }

private:
    struct Parameter {
        std::string_view name; ///< in lower case
        std::optional<std::string_view> value;
    };

    /// Regardless of case. No character beyond ASCII has a letter of these names for its lower case.
    static bool isSame(std::string_view lowerCaseName, std::string_view name)
    {
        return std::ranges::equal(lowerCaseName, name, {}, {}, [](char byte) {
            return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
        });
    }

    std::array<Parameter, 6> parameters_{
        {{"secret", {}}, {"issuer", {}}, {"algorithm", {}}, {"digits", {}}, {"period", {}}, {"counter", {}}}};
};

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
    for (const auto colon : positions(label, ':')) {
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
    if (!components) {
        throw OTPAuthParserError(Case::invalidURL);
    }
    checkScheme(*components);
    AuthToken token;
    token.kind = kindOf(*components);
    const QueryMap query(components->queryItems);
    const auto secret = query["secret"].value_or("");
    if (secret.empty()) {
        throw OTPAuthParserError(Case::missingSecret);
    }

    const auto label = labelOf(components->path);
    const auto parts = splitLabel(label);
    const auto issuer = query["issuer"].value_or(parts ? parts->first : std::string_view());

    token.id = id;
    token.issuer = trimmed(issuer);
    token.account = trimmed(parts ? parts->second : label);
    token.secretBase32 = uppercased(removingSpaces(secret));
    token.algorithm = algorithmFromRawValue(uppercased(query["algorithm"].value_or("SHA1")))
                          .value_or(AuthToken::Algorithm::sha1);
    token.digits = decimal<std::int64_t>(query["digits"].value_or("")).value_or(6);
    token.period = decimal<std::int64_t>(query["period"].value_or("")).value_or(30);
    token.counter = decimal<std::uint64_t>(query["counter"].value_or("")).value_or(0);
    token.createdAt = createdAt;
    return token;
}

} // namespace MirrowvaleAuthenticator
