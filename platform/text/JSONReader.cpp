#include "platform/text/JSONReader.h"

#include "platform/text/Text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <unicode/unistr.h>
#include <unicode/utf16.h>
#include <vector>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::string_view escapedLetters = "\"\\/bfnrt";
constexpr std::string_view escapedBytes = "\"\\/\b\f\n\r\t";
constexpr std::size_t codeUnitSize = 6; // of "\u" and four hexadecimal digits

void require(bool holds)
{
    if (!holds) {
        throw JSONError();
    }
}

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// The size of the escape at the front of a text.
std::size_t escapeSize(std::string_view text)
{
    require(text.size() >= 2);
    if (text[1] != 'u') {
        require(escapedLetters.find(text[1]) != std::string_view::npos);
        return 2;
    }
    constexpr std::string_view digits = "0123456789abcdefABCDEF";
    require(text.size() >= codeUnitSize
            && text.substr(2, codeUnitSize - 2).find_first_not_of(digits) == std::string_view::npos);
    return codeUnitSize;
}

/// Takes a UTF-16 code unit off the front.
UChar32 takeCodeUnit(std::string_view& written)
{
    UChar32 unit = 0;
    std::from_chars(written.data() + 2, written.data() + codeUnitSize, unit, 16);
    written.remove_prefix(codeUnitSize);
    return unit;
}

/// Takes one or two escapes for a character off the front.
std::optional<UChar32> takeScalar(std::string_view& written)
{
    const auto unit = takeCodeUnit(written);
    if (!U_IS_SURROGATE(unit)) {
        return unit;
    }
    if (!U16_IS_SURROGATE_LEAD(unit) || !written.starts_with("\\u")) {
        return std::nullopt;
    }
    const auto second = takeCodeUnit(written);
    return U16_IS_TRAIL(second) ? std::optional(U16_GET_SUPPLEMENTARY(unit, second)) : std::nullopt;
}

} // namespace

JSONReader::JSONReader(std::string_view text) : rest_(text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    rest_.remove_prefix(rest_.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
}

bool JSONReader::takeIf(char punctuator)
{
    skipSpace();
    return takeByteIf(punctuator);
}

void JSONReader::take(char punctuator)
{
    require(takeIf(punctuator));
}

std::string_view JSONReader::takeString()
{
    take('"');
    unsigned seen = 0;
    std::size_t size = 0;
    for (;;) {
        require(size < rest_.size());
        const auto byte = static_cast<unsigned char>(rest_[size]);
        if (byte == '"') {
            break;
        }
        require(byte >= ' ');
        seen |= byte;
        size += byte == '\\' ? escapeSize(rest_.substr(size)) : 1;
    }
    const auto written = rest_.substr(0, size);
    require(seen < 0x80 || isValidUTF8(written));
    rest_.remove_prefix(size + 1);
    return written;
}

std::string_view JSONReader::takeNumber()
{
    skipSpace();
    const auto start = rest_;
    takeByteIf('-');
    if (!takeByteIf('0')) {
        takeDigits();
    }
    if (takeByteIf('.')) {
        takeDigits();
    }
    if (takeByteIf('e') || takeByteIf('E')) {
        takeByteIf('+') || takeByteIf('-');
        takeDigits();
    }
    return start.substr(0, start.size() - rest_.size());
}

void JSONReader::skipValue()
{
    std::vector<bool> areObjects; // what is open, a bit each: the depth is the text's to choose
    do {
        if (!areObjects.empty() && areObjects.back()) {
            takeString();
            take(':');
        }
        const bool isObject = takeIf('{');
        if (isObject || takeIf('[')) {
            areObjects.push_back(isObject);
            if (!takeIf(isObject ? '}' : ']')) {
                continue;
            }
            areObjects.pop_back();
        } else {
            skipLiteral();
        }
        while (!areObjects.empty() && !takeIf(',')) {
            take(areObjects.back() ? '}' : ']');
            areObjects.pop_back();
        }
    } while (!areObjects.empty());
}

void JSONReader::takeEnd()
{
    skipSpace();
    require(rest_.empty());
}

bool JSONReader::takeByteIf(char byte)
{
    const bool isNext = rest_.starts_with(byte);
    rest_.remove_prefix(isNext ? 1 : 0);
    return isNext;
}

void JSONReader::takeDigits()
{
    require(!rest_.empty() && isDigit(rest_.front()));
    rest_.remove_prefix(static_cast<std::size_t>(std::ranges::find_if_not(rest_, isDigit) - rest_.begin()));
}

void JSONReader::skipSpace()
{
    while (takeByteIf(' ') || takeByteIf('\n') || takeByteIf('\r') || takeByteIf('\t')) { }
}

/// Skips a string, a number or one of the three words at the front.
void JSONReader::skipLiteral()
{
    for (const std::string_view word : {"true", "false", "null"}) {
        if (rest_.starts_with(word)) {
            rest_.remove_prefix(word.size());
            return;
        }
    }
    if (rest_.starts_with('"')) {
        takeString();
    } else {
        takeNumber();
    }
}

std::optional<std::string> unescaped(std::string_view written)
{
    std::string text;
    text.reserve(written.size()); // growing would leave copies of a secret behind
    for (;;) {
        const auto plainSize = std::min(written.find('\\'), written.size());
        text += written.substr(0, plainSize);
        written.remove_prefix(plainSize);
        if (written.empty()) {
            return text;
        }
        if (written[1] == 'u') {
            const auto scalar = takeScalar(written);
            if (!scalar) {
                return std::nullopt;
            }
            icu::UnicodeString(*scalar).toUTF8String(text);
        } else {
            text += escapedBytes[escapedLetters.find(written[1])];
            written.remove_prefix(2);
        }
    }
}

} // namespace MirrowvaleAuthenticator
