#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// A text is no JSON, or not what its reader asks for.
class JSONError : public std::exception { };

/// Reads a JSON text (RFC 8259) from front to back: the caller takes what it expects, and skips what it has
/// no use for. What is skipped is checked as strictly, but not converted: numbers may be of any size, strings
/// may hold escapes that stand for no character, and values may nest to any depth.
///
/// Whatever has another form than what is taken throws `JSONError`. Numbers and strings are handed out where
/// they stand: no memory but the caller's holds any.
class JSONReader {
public:
    /// @param text  must outlive the reader; a byte order mark at its front is passed over
    explicit JSONReader(std::string_view text);

    /// Whether `mark`, one of JSON's structural characters, comes next; it is taken if so.
    bool takeIf(char mark);
    void take(char mark);

    /// What stands between the quotation marks of a string, in UTF-8, with its escapes.
    std::string_view takeString();

    /// A number as it is written.
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

/// What a string stands for (UTF-8), from what `JSONReader::takeString` gives; nothing where an escape is
/// half of a surrogate pair.
std::optional<std::string> unescaped(std::string_view written);

} // namespace MirrowvaleAuthenticator
