#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// What was read is not JSON, or not what its reader asks for.
class JSONError : public std::exception { };

/// Reads a JSON text (RFC 8259) from front to back: the caller takes what it expects, and skips what it has
/// no use for. What is skipped is checked as strictly, but not converted: numbers may be of any size, strings
/// may hold escapes for half of a character, and values may nest to any depth.
///
/// Throws `JSONError` for whatever has another form than what is taken. Numbers and strings are views of the
/// caller's text: no other memory holds any.
class JSONReader {
public:
    /// @param text  must outlive the reader; a byte order mark at its front is passed over
    explicit JSONReader(std::string_view text);

    /// Takes `punctuator`, one of JSON's structural characters, if it comes next.
    /// @returns whether it came
    bool takeIf(char punctuator);

    /// Takes `punctuator`, which has to come next.
    void take(char punctuator);

    /// Takes a string: the UTF-8 between its quotes, escapes as they are written.
    std::string_view takeString();

    /// Takes a number, as it is written.
    std::string_view takeNumber();

    /// Passes over any value.
    void skipValue();

    /// Checks that nothing is left.
    void takeEnd();

private:
    bool takeByteIf(char byte);
    void takeDigits();
    void skipSpace();
    void skipLiteral();

    std::string_view rest_;
};

/// Replaces the escapes in what `JSONReader::takeString` gave by their characters (UTF-8).
/// @returns nothing where an escape is half of a surrogate pair
std::optional<std::string> unescaped(std::string_view written);

} // namespace MirrowvaleAuthenticator
