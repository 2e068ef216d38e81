#include "core/StoredForm.h"

#include "fuzz/Fuzzing.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <utility>

using namespace MirrowvaleAuthenticator;
using JSON = nlohmann::json;
using List = std::optional<std::vector<Fuzzing::Fields>>;

namespace {

List fieldsOf(const std::vector<AuthToken>& tokens)
{
    List list(std::in_place);
    std::ranges::transform(tokens, std::back_inserter(*list), Fuzzing::fieldsOf);
    return list;
}

template <typename Integer>
Integer integer(const JSON& value)
{
    const bool fits = value.is_number_integer()
        && (value.is_number_unsigned() ? std::in_range<Integer>(value.get<std::uint64_t>())
                                       : std::in_range<Integer>(value.get<std::int64_t>()));
    return fits ? value.get<Integer>() : throw std::out_of_range("integer");
}

UUID uuid(std::string text)
{
    static const std::regex form("[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}");
    if (!std::regex_match(text, form)) {
        throw std::invalid_argument("UUID");
    }
    std::erase(text, '-');
    UUID id;
    for (std::size_t place = 0; place < id.bytes.size(); ++place) {
        id.bytes[place] = static_cast<std::uint8_t>(std::stoul(text.substr(2 * place, 2), nullptr, 16));
    }
    return id;
}

AuthToken tokenFrom(const JSON& object)
{
    using Kind = AuthToken::Kind;
    using Algorithm = AuthToken::Algorithm;
    static const std::map<std::string, Kind> kinds{{"totp", Kind::totp}, {"hotp", Kind::hotp}};
    static const std::map<std::string, Algorithm> algorithms{
        {"SHA1", Algorithm::sha1}, {"SHA256", Algorithm::sha256}, {"SHA512", Algorithm::sha512}};
    const auto text = [&](const char* key) { return object.at(key).get<std::string>(); };
    return {uuid(text("id")),
            kinds.at(text("kind")),
            text("issuer"),
            text("account"),
            text("secretBase32"),
            algorithms.at(text("algorithm")),
            integer<std::int64_t>(object.at("digits")),
            integer<std::int64_t>(object.at("period")),
            integer<std::uint64_t>(object.at("counter")),
            Date::fromSecondsSinceReferenceDate(object.at("createdAt").get<double>())};
}

/// A string or number of JSON in a form that the library's documents can hold, and that none of the ten
/// members may have: they know no number beyond the doubles and no half of a surrogate pair.
std::string holdable(const std::smatch& literal)
{
    static const std::regex halfPair(
        R"((\\[^u]|\\u[dD][89abAB]..\\u[dD][c-fC-F]..)|\\u[dD][89a-fA-F][\da-fA-F]{2})");
    const auto text = literal.str();
    if (!text.starts_with('"')) {
        return std::isinf(std::strtod(text.c_str(), nullptr)) ? "null" : text;
    }
    const auto whole = std::regex_replace(text, halfPair, "$1");
    const bool isName = literal[1].matched;
    return whole == text ? text : isName ? "\"?" + whole.substr(1) : "[" + whole + "]";
}

std::string holdable(const std::string& text)
{
    static const std::regex literals(
        R"re("(?:[^"\\]|\\[^])*"(\s*:)?|-?(?:0|[1-9]\d*)(?:\.\d+)?(?:[eE][+-]?\d+)?)re");
    std::string result;
    auto rest = text.cbegin();
    for (std::sregex_iterator literal(text.begin(), text.end(), literals), none; literal != none; ++literal) {
        result.append(rest, (*literal)[0].first) += holdable(*literal);
        rest = (*literal)[0].second;
    }
    return result.append(rest, text.cend());
}

/// Reads a list by way of a whole document.
List readByDocument(std::string_view text)
{
    static const std::set<std::string> members{"id",        "kind",   "issuer", "account", "secretBase32",
                                               "algorithm", "digits", "period", "counter", "createdAt"};
    std::set<std::string> seen;
    bool repeats = false;
    const auto watch = [&](int depth, JSON::parse_event_t event, const JSON& value) {
        if (depth == 1 && event == JSON::parse_event_t::object_start) {
            seen.clear();
        } else if (depth == 2 && event == JSON::parse_event_t::key) {
            repeats = repeats || (members.contains(value) && !seen.insert(value).second);
        }
        return true;
    };
    auto document = JSON::parse(text, watch, false);
    if (document.is_discarded()) {
        repeats = false;
        document = JSON::parse(holdable(std::string(text)), watch, false);
    }
    // The library takes a NUL for the end of the text; JSON has none.
    if (!document.is_array() || repeats || text.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    try {
        std::vector<AuthToken> tokens;
        std::ranges::transform(document, std::back_inserter(tokens), tokenFrom);
        return fieldsOf(tokens);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void checkReading(std::string_view text)
{
    List list;
    try {
        const auto tokens = decodeTokens(text);
        list = fieldsOf(tokens);
        Fuzzing::require(fieldsOf(decodeTokens(encodeTokens(tokens))) == list, "what was read is kept");
    } catch (const StoredFormError& error) {
        Fuzzing::require(!list, "what was read can be written and read again");
        Fuzzing::require(!error.errorDescription().empty(), "a refusal says something");
    }
    Fuzzing::require(list == readByDocument(text), "both paths agree");
}

/// Takes a value off the front of an input, behind whose end there are zeros.
template <typename Value>
Value take(std::string_view& input)
{
    Value value{};
    const auto size = std::min(sizeof value, input.size());
    std::memcpy(&value, input.data(), size);
    input.remove_prefix(size);
    return value;
}

std::string takeText(std::string_view& input)
{
    const std::size_t length = take<std::uint8_t>(input);
    std::string text(input.substr(0, length));
    input.remove_prefix(text.size());
    return text;
}

void checkWriting(std::string_view input)
{
    std::vector<AuthToken> tokens;
    bool isWritable = true;
    while (!input.empty()) {
        AuthToken token;
        token.kind = allKinds[take<std::uint8_t>(input) % allKinds.size()];
        token.algorithm = allAlgorithms[take<std::uint8_t>(input) % allAlgorithms.size()];
        token.createdAt = Date::fromSecondsSinceReferenceDate(take<double>(input));
        isWritable = isWritable && std::isfinite(token.createdAt.secondsSinceReferenceDate());
        for (auto* text : {&token.issuer, &token.account, &token.secretBase32}) {
            *text = takeText(input);
            isWritable = isWritable && Fuzzing::isWellFormedUTF8(*text);
        }
        token.digits = take<std::int64_t>(input);
        token.period = take<std::int64_t>(input);
        token.counter = take<std::uint64_t>(input);
        token.id.bytes = take<decltype(token.id.bytes)>(input);
        tokens.push_back(token);
    }
    try {
        const auto text = encodeTokens(tokens);
        Fuzzing::require(isWritable, "only what JSON can say is written");
        Fuzzing::require(fieldsOf(decodeTokens(text)) == fieldsOf(tokens), "what was written reads back");
        Fuzzing::require(readByDocument(text) == fieldsOf(tokens), "any reader of JSON gets it back");
    } catch (const StoredFormError&) {
        Fuzzing::require(!isWritable, "what JSON can say is written");
    }
}

} // namespace

/// An input that starts with NUL, as no JSON does, holds the fields of tokens to write.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 0 && data[0] == 0) {
        checkWriting(Fuzzing::text(data + 1, size - 1));
    } else {
        checkReading(Fuzzing::text(data, size));
    }
    return 0;
}
