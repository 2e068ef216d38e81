#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct UCollator;

/// Text is UTF-8 in `std::string`; bytes that are not count as U+FFFD unless an operation says otherwise. All
/// throw `std::runtime_error` where ICU fails.
namespace MirrowvaleAuthenticator {

/// The Unicode default full case mappings (Unicode 3.13), independent of any locale.
std::string uppercased(std::string_view text);
std::string lowercased(std::string_view text);

/// `text` without the white space and newlines at both ends: general categories Zs, Zl and Zp,
/// U+0009 to U+000D, and U+0085.
std::string_view trimmed(std::string_view text);

/// `text` without any U+0020.
std::string removingSpaces(std::string_view text);

/// The user-perceived characters of `text` in order: extended grapheme clusters (UAX #29), CR LF being one.
/// Each is a view of its place in `text`.
std::vector<std::string_view> characters(std::string_view text);

/// The canonical composition (normalization form C, UAX #15).
std::string canonicalComposition(std::string_view text);

/// Whether both texts are the same under Unicode canonical equivalence.
bool canonicallyEqual(std::string_view left, std::string_view right);

/// Whether `text` is well-formed UTF-8 (RFC 3629).
bool isValidUTF8(std::string_view text);

/// Replaces every percent-escape by its byte (RFC 3986, section 2.1).
/// @returns nothing where a "%" is not followed by two hexadecimal digits or the result is not UTF-8
std::optional<std::string> removingPercentEncoding(std::string_view text);

/// The same within `text`, whose bytes are lost.
/// @returns the front of `text`, which holds the result
std::optional<std::string_view> removePercentEncoding(std::span<char> text);

/// Orders texts as a person of the user's locale (LC_ALL, LC_COLLATE or LANG) expects, regardless of case.
class LocalizedCaseInsensitiveOrder {
public:
    LocalizedCaseInsensitiveOrder();

    /// Bytes whose lexicographic order is the order of the texts they were made from.
    std::string sortKey(std::string_view text) const;

private:
    struct CloseCollator {
        void operator()(UCollator* collator) const;
    };

    std::unique_ptr<UCollator, CloseCollator> collator_;
};

} // namespace MirrowvaleAuthenticator
