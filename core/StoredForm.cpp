#include "core/StoredForm.h"

#include "platform/text/JSONReader.h"
#include "platform/text/Text.h"

#include <array>
#include <bitset>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <cstdlib>
#include <locale.h>
#include <optional>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::size_t memberCount = 10;

/// The members of a token's object, in field order.
template <typename Token, typename Visit>
void visitMembers(Token& token, Visit visit)
{
    visit("id", token.id);
    visit("kind", token.kind);
    visit("issuer", token.issuer);
    visit("account", token.account);
    visit("secretBase32", token.secretBase32);
    visit("algorithm", token.algorithm);
    visit("digits", token.digits);
    visit("period", token.period);
    visit("counter", token.counter);
    visit("createdAt", token.createdAt);
}

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

void require(bool holds)
{
    if (!holds) {
        throw JSONError();
    }
}

template <typename Value>
Value required(std::optional<Value> value)
{
    if (!value) {
        throw JSONError();
    }
    return *std::move(value);
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
    require(error == std::errc() && end == written.data() + written.size());
}

/// Takes the nearest double, whatever the program's locale; what is too small for one is zero.
void take(JSONReader& json, Date& instant)
{
    static const locale_t plainLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    const std::string written(takeNumber(json));
    const double seconds = strtod_l(written.c_str(), nullptr, plainLocale);
    require(std::isfinite(seconds));
    instant = Date::fromSecondsSinceReferenceDate(seconds);
}

void takeToken(JSONReader& json, AuthToken& token)
{
    std::bitset<memberCount> seen;
    json.take('{');
    do {
        const auto name = unescaped(json.takeString()).value_or("");
        json.take(':');
        bool isKnown = false;
        std::size_t index = 0;
        visitMembers(token, [&](std::string_view member, auto& value) {
            if (name == member) {
                isKnown = true;
                require(!seen.test(index)); // which of two values was meant cannot be known
                seen.set(index);
                take(json, value);
            }
            ++index;
        });
        if (!isKnown) {
            json.skipValue();
        }
    } while (json.takeIf(','));
    json.take('}');
    require(seen.all());
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

bool mustBeEscaped(char character)
{
    return static_cast<unsigned char>(character) < ' ' || character == '"' || character == '\\';
}

void appendEscape(SecretString& json, char character)
{
    json += '\\';
    if (character == '"' || character == '\\') {
        json += character;
        return;
    }
    constexpr std::string_view digits = "0123456789abcdef";
    json += "u00";
    json += digits[static_cast<unsigned char>(character) >> 4];
    json += digits[static_cast<unsigned char>(character) & 0xfU];
}

void append(SecretString& json, std::string_view text)
{
    if (!isValidUTF8(text)) {
        throw StoredFormError(StoredFormError::Case::unwritable);
    }
    json += '"';
    for (const char character : text) {
        if (mustBeEscaped(character)) {
            appendEscape(json, character);
        } else {
            json += character;
        }
    }
    json += '"';
}

void append(SecretString& json, const UUID& id)
{
    append(json, id.string());
}

void append(SecretString& json, AuthToken::Kind kind)
{
    append(json, rawValue(kind));
}

void append(SecretString& json, AuthToken::Algorithm algorithm)
{
    append(json, rawValue(algorithm));
}

/// The shortest digits that are read as the same number.
template <typename Number>
void appendDigits(SecretString& json, Number number)
{
    std::array<char, 32> digits{};
    json.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void append(SecretString& json, std::integral auto integer)
{
    appendDigits(json, integer);
}

void append(SecretString& json, Date instant)
{
    const double seconds = instant.secondsSinceReferenceDate();
    if (!std::isfinite(seconds)) { // for which JSON has no form
        throw StoredFormError(StoredFormError::Case::unwritable);
    }
    const auto start = json.size();
    appendDigits(json, seconds);
    if (json.find_first_of(".e", start) == json.npos) {
        json += ".0"; // a reader that makes an integer of it would lose the sign of a zero
    }
}

void append(SecretString& json, const AuthToken& token)
{
    char before = '{';
    visitMembers(token, [&](std::string_view name, const auto& value) {
        json += std::exchange(before, ',');
        append(json, name);
        json += ':';
        append(json, value);
    });
    json += '}';
}

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
    for (const auto& token : tokens) {
        if (text.size() > 1) {
            text += ',';
        }
        append(text, token);
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
