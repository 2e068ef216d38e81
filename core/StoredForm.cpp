#include "core/StoredForm.h"

#include "platform/text/JSONReader.h"
#include "platform/text/Text.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <cstdlib>
#include <locale.h>
#include <optional>
#include <type_traits>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

/// The members of a token's object, in field order.
enum class CodingKey {
    id,
    kind,
    issuer,
    account,
    secretBase32,
    algorithm,
    digits,
    period,
    counter,
    createdAt
};

constexpr std::array<std::string_view, 10> codingKeys{"id",           "kind",      "issuer", "account",
                                                      "secretBase32", "algorithm", "digits", "period",
                                                      "counter",      "createdAt"};

std::string sentence(StoredFormError::Case which)
{
    switch (which) {
    case StoredFormError::Case::unwritable:
        return "The data couldn’t be written because it isn’t in the correct format.";
    case StoredFormError::Case::unreadable:
        return "The data couldn’t be read because it isn’t in the correct format.";
    }
    __builtin_unreachable();
}

template <typename Value>
Value required(std::optional<Value> value)
{
    if (!value) {
        throw JSONError();
    }
    return std::move(*value);
}

/// The member of this name, or nothing where it is none of the ten.
std::optional<CodingKey> takeKey(JSONReader& json)
{
    const auto written = json.takeString();
    json.take(':');
    const bool isPlain = written.find('\\') == std::string_view::npos;
    const auto found = isPlain ? std::ranges::find(codingKeys, written)
                               : std::ranges::find(codingKeys, unescaped(written).value_or(""));
    return found == codingKeys.end() ? std::nullopt
                                     : std::optional(static_cast<CodingKey>(found - codingKeys.begin()));
}

std::string takeText(JSONReader& json)
{
    return required(unescaped(json.takeString()));
}

/// A number as it is written, save that an integer zero has no sign.
std::string_view takeNumber(JSONReader& json)
{
    const auto written = json.takeNumber();
    return written == "-0" ? written.substr(1) : written;
}

void take(JSONReader& json, std::string& text)
{
    text = takeText(json);
}

void take(JSONReader& json, UUID& id)
{
    id = required(UUID::fromString(takeText(json)));
}

void take(JSONReader& json, AuthToken::Kind& kind)
{
    kind = required(kindFromRawValue(takeText(json)));
}

void take(JSONReader& json, AuthToken::Algorithm& algorithm)
{
    algorithm = required(algorithmFromRawValue(takeText(json)));
}

/// Takes an integer, which has neither fraction nor exponent.
template <std::integral Integer>
void take(JSONReader& json, Integer& integer)
{
    const auto written = takeNumber(json);
    const auto [end, error] = std::from_chars(written.data(), written.data() + written.size(), integer);
    if (error != std::errc() || end != written.data() + written.size()) {
        throw JSONError();
    }
}

/// Takes the nearest double, whatever the program's locale; what is too small for one is zero.
void take(JSONReader& json, Date& instant)
{
    static const locale_t plainLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    const std::string written(takeNumber(json));
    const double seconds = strtod_l(written.c_str(), nullptr, plainLocale);
    if (!std::isfinite(seconds)) {
        throw JSONError();
    }
    instant = Date::fromSecondsSinceReferenceDate(seconds);
}

void takeMember(JSONReader& json, CodingKey key, AuthToken& token)
{
    switch (key) {
    case CodingKey::id:
        return take(json, token.id);
    case CodingKey::kind:
        return take(json, token.kind);
    case CodingKey::issuer:
        return take(json, token.issuer);
    case CodingKey::account:
        return take(json, token.account);
    case CodingKey::secretBase32:
        return take(json, token.secretBase32);
    case CodingKey::algorithm:
        return take(json, token.algorithm);
    case CodingKey::digits:
        return take(json, token.digits);
    case CodingKey::period:
        return take(json, token.period);
    case CodingKey::counter:
        return take(json, token.counter);
    case CodingKey::createdAt:
        return take(json, token.createdAt);
    }
    __builtin_unreachable();
}

void takeToken(JSONReader& json, AuthToken& token)
{
    std::bitset<codingKeys.size()> seen;
    json.take('{');
    do {
        const auto key = takeKey(json);
        if (!key) {
            json.skipValue();
            continue;
        }
        const auto index = static_cast<std::size_t>(*key);
        if (seen[index]) {
            throw JSONError(); // which of two values was meant cannot be known
        }
        seen.set(index);
        takeMember(json, *key, token);
    } while (json.takeIf(','));
    json.take('}');
    if (!seen.all()) {
        throw JSONError();
    }
}

std::vector<AuthToken> takeTokens(std::string_view text)
{
    constexpr std::size_t leastSize = 160; // of a token: its members with empty values
    std::vector<AuthToken> tokens;
    tokens.reserve(text.size() / leastSize);
    JSONReader json(text);
    json.take('[');
    if (!json.takeIf(']')) {
        do {
            takeToken(json, tokens.emplace_back());
        } while (json.takeIf(','));
        json.take(']');
    }
    json.takeEnd();
    return tokens;
}

/// Writes members one after the other.
class TokenWriter {
public:
    explicit TokenWriter(SecretString& text) : json_(text) { }

    void write(const AuthToken& token)
    {
        json_ += '{';
        appendText(CodingKey::id, token.id.string());
        appendText(CodingKey::kind, rawValue(token.kind));
        appendText(CodingKey::issuer, token.issuer);
        appendText(CodingKey::account, token.account);
        appendText(CodingKey::secretBase32, token.secretBase32);
        appendText(CodingKey::algorithm, rawValue(token.algorithm));
        appendNumber(CodingKey::digits, token.digits);
        appendNumber(CodingKey::period, token.period);
        appendNumber(CodingKey::counter, token.counter);
        appendSeconds(CodingKey::createdAt, token.createdAt.secondsSinceReferenceDate());
        json_ += '}';
    }

private:
    void appendKey(CodingKey key)
    {
        json_ += key == CodingKey::id ? "\"" : ",\"";
        json_ += codingKeys[static_cast<std::size_t>(key)];
        json_ += "\":";
    }

    void appendText(CodingKey key, std::string_view text)
    {
        if (!isValidUTF8(text)) {
            throw StoredFormError(StoredFormError::Case::unwritable);
        }
        appendKey(key);
        json_ += '"';
        for (;;) {
            const auto plain = std::string_view(text.begin(), std::ranges::find_if(text, mustBeEscaped));
            json_ += plain;
            text.remove_prefix(plain.size());
            if (text.empty()) {
                break;
            }
            appendEscape(text.front());
            text.remove_prefix(1);
        }
        json_ += '"';
    }

    static bool mustBeEscaped(char character)
    {
        return static_cast<unsigned char>(character) < ' ' || character == '"' || character == '\\';
    }

    void appendEscape(char character)
    {
        json_ += '\\';
        if (character == '"' || character == '\\') {
            json_ += character;
            return;
        }
        constexpr std::string_view digits = "0123456789abcdef";
        json_ += "u00";
        json_ += digits[static_cast<unsigned char>(character) >> 4];
        json_ += digits[static_cast<unsigned char>(character) & 0xfU];
    }

    template <typename Number>
    void appendNumber(CodingKey key, Number number)
    {
        appendKey(key);
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        json_.append(digits.data(), end);
        const bool isInteger =
            std::none_of(digits.data(), end, [](char byte) { return byte == '.' || byte == 'e'; });
        if (std::is_floating_point_v<Number> && isInteger) {
            json_ += ".0"; // readers that take it for an integer would lose the sign of a zero
        }
    }

    void appendSeconds(CodingKey key, double seconds)
    {
        // JSON has no form for an infinity or NaN.
        if (!std::isfinite(seconds)) {
            throw StoredFormError(StoredFormError::Case::unwritable);
        }
        appendNumber(key, seconds);
    }

    SecretString& json_;
};

} // namespace

StoredFormError::StoredFormError(Case which) : LocalizedError(sentence(which))
{
}

SecretString encodeTokens(const std::vector<AuthToken>& tokens)
{
    constexpr std::size_t ordinarySize = 256; // of a token's object
    SecretString text;
    text.reserve(tokens.size() * ordinarySize);
    text += '[';
    TokenWriter writer(text);
    for (const auto& token : tokens) {
        if (text.size() > 1) {
            text += ',';
        }
        writer.write(token);
    }
    text += ']';
    return text;
}

std::vector<AuthToken> decodeTokens(std::string_view json)
{
    try {
        return takeTokens(json);
    } catch (const JSONError&) {
        throw StoredFormError(StoredFormError::Case::unreadable);
    }
}

} // namespace MirrowvaleAuthenticator
