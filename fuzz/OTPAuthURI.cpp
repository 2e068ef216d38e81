#include "core/OTPAuthURI.h"

#include "core/Base32.h"
#include "core/CodeGeneration.h"
#include "core/StoredForm.h"
#include "fuzz/Fuzzing.h"
#include "platform/text/Text.h"

#include <cerrno>
#include <map>
#include <set>
#include <variant>

using namespace MirrowvaleAuthenticator;
using Fuzzing::naivelyDecoded;
using Fuzzing::require;

namespace {

using Case = OTPAuthParserError::Case;
using Outcome = std::variant<Fuzzing::Fields, std::string>; ///< what was read, or why nothing was

Outcome outcomeOf(AuthToken (*parse)(std::string_view), std::string_view text)
{
    try {
        auto token = parse(text);
        token.id = {};
        token.createdAt = {};
        return Fuzzing::fieldsOf(token);
    } catch (const OTPAuthParserError& error) {
        return error.errorDescription();
    }
}

/// Takes the text before the first of `ends` off the front, and that one too.
std::string takeUpTo(const char* ends, std::string& text)
{
    const auto length = std::min(text.find_first_of(ends), text.size());
    auto piece = text.substr(0, length);
    text.erase(0, length + 1);
    return piece;
}

template <typename Number>
Number number(std::string text, Number (*read)(const char*, char**, int), Number otherwise)
{
    const auto digits = text.substr(text.starts_with('+') || text.starts_with('-') ? 1 : 0);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
        return otherwise;
    }
    errno = 0;
    const auto value = read(text.c_str(), nullptr, 10);
    const bool isBelowZero = text.starts_with('-') && digits.find_first_not_of('0') != std::string::npos;
    return errno == ERANGE || (std::is_unsigned_v<Number> && isBelowZero) ? otherwise : value;
}

void readLabel(const std::string& path, AuthToken& token)
{
    auto label = path;
    label.erase(0, label.find_first_not_of('/'));
    label.erase(label.find_last_not_of('/') + 1);
    label = naivelyDecoded(label).value_or(label);
    std::string first;
    std::string second;
    bool isSecond = false;
    for (const auto character : characters(label)) {
        if (character == ":" && !isSecond) {
            isSecond = !first.empty();
        } else {
            (isSecond ? second : first) += character;
        }
    }
    token.issuer = second.empty() ? std::string() : first;
    token.account = second.empty() ? label : second;
}

/// What a text that is known to be a URI says.
AuthToken naivelyParsed(std::string_view uri)
{
    std::string text(uri);
    auto rest = takeUpTo("#", text);
    const auto beforePath = rest.substr(0, rest.find_first_of("/?"));
    if (beforePath.find(':') == std::string::npos || lowercased(takeUpTo(":", rest)) != "otpauth") {
        throw OTPAuthParserError(Case::invalidURL);
    }
    AuthToken token;
    auto authority = rest.starts_with("//") ? rest.substr(2, rest.find_first_of("/?", 2) - 2) : std::string();
    rest.erase(0, rest.starts_with("//") ? authority.size() + 2 : 0);
    authority.erase(0, authority.rfind('@') + 1);
    const auto kind = kindFromRawValue(lowercased(naivelyDecoded(takeUpTo(":", authority)).value_or("")));
    if (!kind) {
        throw OTPAuthParserError(Case::unsupportedType);
    }
    token.kind = *kind;
    readLabel(naivelyDecoded(takeUpTo("?", rest)).value_or(""), token);

    static const std::set<std::string> names{"secret", "issuer", "algorithm", "digits", "period", "counter"};
    std::map<std::string, std::string> query;
    while (!rest.empty()) {
        auto value = takeUpTo("&", rest);
        const auto name = canonicalComposition(lowercased(naivelyDecoded(takeUpTo("=", value)).value_or("")));
        const auto decoded = naivelyDecoded(value);
        if (names.contains(name) && (!decoded || !query.emplace(name, *decoded).second)) {
            throw OTPAuthParserError(Case::invalidURL);
        }
    }
    if (query["secret"].empty()) {
        throw OTPAuthParserError(Case::missingSecret);
    }
    token.issuer = trimmed(query.contains("issuer") ? query["issuer"] : token.issuer);
    token.account = trimmed(token.account);
    token.secretBase32 = uppercased(removingSpaces(query["secret"]));
    token.algorithm =
        algorithmFromRawValue(uppercased(query["algorithm"])).value_or(AuthToken::Algorithm::sha1);
    token.digits = number<long long>(query["digits"], std::strtoll, 6);
    token.period = number<long long>(query["period"], std::strtoll, 30);
    token.counter = number<unsigned long long>(query["counter"], std::strtoull, 0);
    return token;
}

bool hasWholeEscapes(std::string_view text)
{
    constexpr std::string_view digits = "0123456789abcdefABCDEF";
    for (auto escape = text.find('%'); escape != text.npos; escape = text.find('%', escape + 1)) {
        const auto number = text.substr(escape + 1, 2);
        if (number.size() < 2 || number.find_first_not_of(digits) != number.npos) {
            return false;
        }
    }
    return true;
}

/// Whether a text is a URI beyond doubt: a scheme, a host of letters, no characters but those that may be
/// anywhere after it, escapes that are whole, and a path that decodes.
bool isPlainURI(std::string_view text)
{
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz";
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~:/?&=+%";
    constexpr std::string_view start = "otpauth://";
    if (!text.starts_with(start)) {
        return false;
    }
    const auto hostEnd = std::min(text.find_first_not_of(letters, start.size()), text.size());
    return (hostEnd == text.size() || text[hostEnd] == '/' || text[hostEnd] == '?')
        && text.find_first_not_of(plain) == std::string_view::npos && hasWholeEscapes(text)
        && naivelyDecoded(std::string(text.substr(0, text.find('?'))));
}

void checkUse(const AuthToken& token)
{
    require(decodeTokens(encodeTokens({token})).at(0) == token, "what was read can be stored");
    try {
        const auto code = currentCode(token, Date::fromSecondsSince1970(1'234'567'890));
        require(code.size() == static_cast<std::size_t>(token.digits), "a code has its digits");
    } catch (const OTPError&) {
    } catch (const Base32Error&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto text = Fuzzing::text(data, size);
    const auto outcome = outcomeOf(parseOTPAuthURI, text);
    static const Outcome noURI = OTPAuthParserError(Case::invalidURL).errorDescription();
    // Which texts are URIs is the grammar's to know, unless there is no doubt.
    if (outcome != noURI || isPlainURI(text)) {
        require(outcome == outcomeOf(naivelyParsed, text), "both paths agree");
    }
    if (outcome.index() == 0) {
        checkUse(parseOTPAuthURI(text));
    }
    return 0;
}
