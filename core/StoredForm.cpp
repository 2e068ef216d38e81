#include "core/StoredForm.h"

#include <array>
#include <bitset>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

/// JSON values that wipe what they held: the list is made of secrets.
using SecretJSON = nlohmann::basic_json<nlohmann::ordered_map, std::vector, SecretString, bool, std::int64_t,
                                        std::uint64_t, double, WipingAllocator>;

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
bool assign(const std::optional<Value>& value, Value& field)
{
    field = value.value_or(field);
    return value.has_value();
}

/// Builds tokens while the JSON parser reads. Each callback returns whether to read on.
class TokenReader {
public:
    using number_integer_t = SecretJSON::number_integer_t;
    using number_unsigned_t = SecretJSON::number_unsigned_t;
    using number_float_t = SecretJSON::number_float_t;
    using string_t = SecretJSON::string_t;
    using binary_t = SecretJSON::binary_t;

    bool null() { return isSkipping(); }
    bool boolean(bool) { return isSkipping(); }
    bool binary(const binary_t&) { return false; }
    bool number_integer(number_integer_t number) { return isSkipping() || takeInteger(number); }
    bool number_unsigned(number_unsigned_t number) { return isSkipping() || takeInteger(number); }

    template <typename Text>
    bool number_float(number_float_t number, const Text&)
    {
        return isSkipping() || (isAt(CodingKey::createdAt) && takeSeconds(number));
    }

    bool string(const string_t& text) { return isSkipping() || takeText(text); }

    bool start_array(std::size_t)
    {
        if (place == Place::start) {
            place = Place::list;
            return true;
        }
        return enterSkipped();
    }

    bool end_array()
    {
        if (skippedDepth > 0) {
            --skippedDepth;
        }
        return true;
    }

    bool start_object(std::size_t)
    {
        if (place == Place::list) {
            place = Place::token;
            token = {};
            seen.reset();
            return true;
        }
        return enterSkipped();
    }

    bool end_object()
    {
        if (skippedDepth > 0) {
            --skippedDepth;
            return true;
        }
        place = Place::list;
        tokens.push_back(std::move(token));
        return seen.all();
    }

    bool key(const string_t& name)
    {
        if (skippedDepth > 0) {
            return true;
        }
        const auto position = std::ranges::find(codingKeys, std::string_view(name)) - codingKeys.begin();
        const auto index = static_cast<std::size_t>(position);
        member.reset();
        if (index == codingKeys.size()) {
            return true;
        }
        member = static_cast<CodingKey>(index);
        const bool isFirst = !seen[index];
        seen.set(index);
        return isFirst; // which of two values was meant cannot be known
    }

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) { return false; }

    std::vector<AuthToken> tokens;

private:
    enum class Place { start, list, token };

    /// Whether the value at hand belongs to a member that is none of the ten.
    bool isSkipping() const { return skippedDepth > 0 || (place == Place::token && !member); }
    bool isAt(CodingKey key) const { return place == Place::token && member == key; }

    bool enterSkipped()
    {
        if (!isSkipping()) {
            return false;
        }
        ++skippedDepth;
        return true;
    }

    bool takeSeconds(double seconds)
    {
        token.createdAt = Date::fromSecondsSinceReferenceDate(seconds);
        return true;
    }

    template <typename Number>
    bool takeInteger(Number number)
    {
        if (isAt(CodingKey::createdAt)) {
            return takeSeconds(static_cast<double>(number));
        }
        if (isAt(CodingKey::counter)) {
            token.counter = static_cast<std::uint64_t>(number);
            return std::in_range<std::uint64_t>(number);
        }
        if (isAt(CodingKey::digits) || isAt(CodingKey::period)) {
            (isAt(CodingKey::digits) ? token.digits : token.period) = static_cast<std::int64_t>(number);
            return std::in_range<std::int64_t>(number);
        }
        return false;
    }

    bool takeText(std::string_view text)
    {
        if (place != Place::token) {
            return false;
        }
        switch (*member) {
        case CodingKey::id:
            return assign(UUID::fromString(text), token.id);
        case CodingKey::kind:
            return assign(kindFromRawValue(text), token.kind);
        case CodingKey::algorithm:
            return assign(algorithmFromRawValue(text), token.algorithm);
        case CodingKey::issuer:
            token.issuer = text;
            return true;
        case CodingKey::account:
            token.account = text;
            return true;
        case CodingKey::secretBase32:
            token.secretBase32 = text;
            return true;
        case CodingKey::digits:
        case CodingKey::period:
        case CodingKey::counter:
        case CodingKey::createdAt:
            return false;
        }
        __builtin_unreachable();
    }

    Place place = Place::start;
    AuthToken token;
    std::optional<CodingKey> member;
    std::bitset<codingKeys.size()> seen;
    std::size_t skippedDepth = 0;
};

/// Whether a text stands between quotation marks as it is.
bool isPlain(std::string_view text)
{
    bool isPlain = true; // to the end of the text: without a way out, many bytes are looked at in one go
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        isPlain &= byte >= ' ' && byte < 0x80 && byte != '"' && byte != '\\';
    }
    return isPlain;
}

/// Writes members one after the other; what takes more than copying is left to the library.
class TokenWriter {
public:
    explicit TokenWriter(SecretString& text) : json(text) { }

    void write(const AuthToken& token)
    {
        json += '{';
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
        json += '}';
    }

private:
    void appendKey(CodingKey key)
    {
        json += key == CodingKey::id ? "\"" : ",\"";
        json += codingKeys[static_cast<std::size_t>(key)];
        json += "\":";
    }

    void appendText(CodingKey key, std::string_view text)
    {
        appendKey(key);
        if (isPlain(text)) {
            json += '"';
            json += text;
            json += '"';
        } else {
            json += SecretJSON(SecretString(text)).dump(); // throws where it is not UTF-8
        }
    }

    template <typename Number>
    void appendNumber(CodingKey key, Number number)
    {
        appendKey(key);
        std::array<char, 24> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        json.append(digits.data(), end);
    }

    void appendSeconds(CodingKey key, double seconds)
    {
        // JSON has no form for an infinity or NaN: the library would write null.
        if (!std::isfinite(seconds)) {
            throw StoredFormError(StoredFormError::Case::unwritable);
        }
        appendKey(key);
        json += SecretJSON(seconds).dump();
    }

    SecretString& json;
};

} // namespace

StoredFormError::StoredFormError(Case failure) : LocalizedError(sentence(failure))
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
        try {
            writer.write(token);
        } catch (const SecretJSON::exception&) {
            throw StoredFormError(StoredFormError::Case::unwritable); // not UTF-8
        }
    }
    text += ']';
    return text;
}

std::vector<AuthToken> decodeTokens(std::string_view json)
{
    constexpr std::size_t leastSize = 160; // of a token: its members with empty values
    TokenReader reader;
    reader.tokens.reserve(json.size() / leastSize);
    // The parser takes a NUL for the end of the text; no JSON text holds one.
    if (json.find('\0') != std::string_view::npos || !SecretJSON::sax_parse(json, &reader)) {
        throw StoredFormError(StoredFormError::Case::unreadable);
    }
    return std::move(reader.tokens);
}

} // namespace MirrowvaleAuthenticator
