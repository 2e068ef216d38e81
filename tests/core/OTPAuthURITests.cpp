#include "core/OTPAuthURI.h"

#include <gtest/gtest.h>
#include <limits>

namespace MirrowvaleAuthenticator {

namespace {

using namespace std::string_literals;
using Algorithm = AuthToken::Algorithm;
using Kind = AuthToken::Kind;

constexpr auto invalidURL = "Enter a valid otpauth:// URI.";
constexpr auto missingSecret = "The otpauth URI does not contain a secret.";
constexpr auto unsupportedType = "Only TOTP and HOTP otpauth URIs are supported.";

/// The message of the parse's failure, or nothing.
std::string failure(std::string_view uri)
{
    try {
        parseOTPAuthURI(uri);
        return {};
    } catch (const OTPAuthParserError& error) {
        return error.errorDescription();
    }
}

} // namespace

TEST(OTPAuthURI, takesEveryFieldFromTheURI)
{
    const auto before = Date::now().secondsSince1970();
    const auto token = parseOTPAuthURI(
        "otpauth://HoTp/"
        "Old:bob?secret=ab%20c&issuer=New&algorithm=sha512&digits=8&period=60&counter=9&image=x");
    EXPECT_GE(token.createdAt.secondsSince1970(), before);
    EXPECT_LE(token.createdAt.secondsSince1970(), Date::now().secondsSince1970());
    const AuthToken expected{token.id,          Kind::hotp, "New", "bob", "ABC",
                             Algorithm::sha512, 8,          60,    9,     token.createdAt};
    EXPECT_EQ(token, expected);

    const auto plain = parseOTPAuthURI("otpauth://totp?secret=X");
    EXPECT_FALSE(plain.id == token.id);
    const AuthToken defaults{plain.id, Kind::totp, "", "", "X", Algorithm::sha1, 6, 30, 0, plain.createdAt};
    EXPECT_EQ(plain, defaults);

    const auto large = parseOTPAuthURI("otpauth://hotp/x?secret=X&digits=9223372036854775807&"
                                       "period=-9223372036854775808&counter=18446744073709551615");
    EXPECT_EQ(large.digits, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(large.period, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(large.counter, std::numeric_limits<std::uint64_t>::max());
}

TEST(OTPAuthURI, acceptsSchemeTypeAndNamesInAnyCase)
{
    for (const auto* uri : {"OTPAUTH://TOTP/x?SECRET=S", "otpauth://u:p@totp:99/x?secret=S#secret=T",
                            "otpauth://:@%74otp:/x?%73ecret=S", "otpauth://totp/x?a=1&&secret=S&b&c=&&a=2",
                            "otpauth://totp/x?a=%FF&secret=S&%ED%A0%80=%C3&%C3%A9=1&%C3%89=2&secret%FF=1"}) {
        SCOPED_TRACE(uri);
        ASSERT_EQ(failure(uri), "");
        EXPECT_EQ(parseOTPAuthURI(uri).kind, Kind::totp);
        EXPECT_EQ(parseOTPAuthURI(uri).secretBase32, "S");
    }
}

TEST(OTPAuthURI, splitsTheLabelAndPrefersTheIssuerParameter)
{
    // clang-format off
    const struct { std::string label, parameters, issuer, account; } table[] = {
        {"/Acme:alice", "", "Acme", "alice"}, {"/Old:bob", "&issuer=New", "New", "bob"},
        {"/Old:bob", "&issuer=", "", "bob"}, {"/Old:bob", "&ISSUER=%C2%A0N%20Co%E3%80%80%0A", "N Co", "bob"},
        {"/carol", "", "", "carol"}, {"/", "", "", ""}, {"/:::Acme:alice", "", "Acme", "alice"},
        {"/Acme:", "", "", "Acme:"}, {"/:alice", "", "", ":alice"}, {"/Acme::alice", "", "Acme", ":alice"},
        {"/a:b:c", "&issuer=I", "I", "b:c"}, {"/Acme:%20a%20b%20", "", "Acme", "a b"},
        {"/Acme%253Aalice", "", "Acme", "alice"}, {"/100%25", "", "", "100%"}, {"/%25FF:a", "", "%FF", "a"},
        {"/Acme:%CC%81b:alice", "", "Acme:\u0301b", "alice"}, {"/Acme%0D:%0Aalice", "", "Acme", "alice"},
        {"//a/b//", "", "", "a/b"}, {"/%252Fa", "", "", "/a"}, {"/a+b:c+d", "", "a+b", "c+d"},
    };
    // clang-format on
    for (const auto& row : table) {
        const auto uri = "otpauth://totp" + row.label + "?secret=X" + row.parameters;
        SCOPED_TRACE(uri);
        ASSERT_EQ(failure(uri), "");
        const auto token = parseOTPAuthURI(uri);
        EXPECT_EQ(token.issuer, row.issuer);
        EXPECT_EQ(token.account, row.account);
    }
}

TEST(OTPAuthURI, upperCasesTheSecretAndRemovesPlainSpacesOnly)
{
    // clang-format off
    const std::pair<std::string, std::string> table[] = {
        {"%20", ""}, {"a%09b%0D%0A", "A\tB\r\n"}, {"a%20b%C2%A0c%00", "AB\u00A0C\0"s},
        {"%C3%9Fi%C4%B1", "SSII"}, {"a+b?/:@=1-8==", "A+B?/:@=1-8=="}, {"%2520", "%20"},
    };
    // clang-format on
    for (const auto& [written, secret] : table) {
        EXPECT_EQ(parseOTPAuthURI("otpauth://totp/x?secret=" + written).secretBase32, secret) << written;
    }
}

TEST(OTPAuthURI, failsWithTheFirstCheckThatFails)
{
    // clang-format off
    const std::pair<const char*, std::vector<std::string>> refusals[] = {
        {invalidURL, {
            "", "totp/x?secret=X", "//totp/x?secret=X", "otp://totp/x?secret=X", "otpauths://push/x",
            " otpauth://totp/x?secret=X", "otpauth://totp/x?secret=X\n", "otpauth://totp/a b?secret=X",
            "otpauth://totp/é?secret=X", "otpauth://totp/x?secret=X|", "otpauth://totp/x?secret=X#a#b",
            "otpauth://totp/x?secret=X\0"s, "otpauth://totp/100%?secret=X", "otpauth://push/%FF",
            "otpauth://totp/x?secret=X&a=%zz", "otpauth://totp:x/?secret=X", "otpauth://totp/x?secret=X#%zz",
            "otpauth://totp/x?secret=%C3", "otpauth://totp/x?secret=X&issuer=%FF",
            "otpauth://totp/x?secret=X&ALGORITHM=%FF", "otpauth://totp/x?secret=X&digits=%FF",
            "otpauth://totp/x?secret=X&period=%FF", "otpauth://totp/x?secret=X&counter=%FF",
            "otpauth://totp/[a]?secret=X", "otpauth://a@totp@x/?secret=X", "otpauth://[::1/x?secret=X",
            "otpauth://totp/x?secret=X&secret=X", "otpauth://totp/x?secret=X&Secret",
            "otpauth://totp/x?secret=X&%53ECRET=Y", "otpauth://totp/x?issuer=I&Issuer",
        }},
        {unsupportedType, {
            "otpauth:", "otpauth:totp?secret=X", "otpauth:///totp?secret=X", "otpauth://push/x",
            "otpauth://totp@x/x?secret=X", "otpauth://[::1]/x?secret=X",
            "otpauth://push/x?secret=X&secret=%FF",
        }},
        {missingSecret, {
            "otpauth://totp", "otpauth://totp/x?secret=", "otpauth://totp/x?secret",
            "otpauth://totp/x?secrets=X&%20secret=X", "otpauth://totp/x?%C5%BFecret=X",
            "otpauth://totp/x#secret=X",
        }},
    };
    // clang-format on
    for (const auto& [message, uris] : refusals) {
        for (const auto& uri : uris) {
            EXPECT_EQ(failure(uri), message) << uri;
        }
    }
}

TEST(OTPAuthURI, answersTextsOfAMegabyteWhateverTheyHold)
{
    const auto megabyte = [](std::string_view piece) {
        std::string text(piece);
        while (text.size() < 1'000'000) {
            text += text;
        }
        return text;
    };
    const char* pieces[] = {"a", ":", "/", "%25", "%CC%81", "%0D%0A", "%FF",
                            "%", "&", "=", "?",   "@",      "[",      "é"};
    // clang-format off
    const std::pair<const char*, const char*> places[] = {
        {"", ""}, {"otpauth://", "/x?secret=X"}, {"otpauth://totp:", "/x?secret=X"},
        {"otpauth://totp/", "?secret=X"}, {"otpauth://totp/x?secret=", "&issuer=b"},
        {"otpauth://totp/x?secret=X&", ""}, {"otpauth://totp/x?secret=X&digits=", "&counter=1"},
        {"otpauth://totp/x?secret=X#", ""},
    };
    // clang-format on
    for (const auto* piece : pieces) {
        const auto filling = megabyte(piece);
        for (const auto& [before, after] : places) {
            SCOPED_TRACE(before + "…"s + piece + "…" + after);
            EXPECT_NO_THROW(failure(before + filling + after));
        }
    }
    EXPECT_EQ(parseOTPAuthURI("otpauth://totp/" + megabyte(":") + "a:b?secret=X").issuer, "a");
    EXPECT_EQ(parseOTPAuthURI("otpauth://totp/x?secret=" + megabyte("a%20")).secretBase32.size(), 262'144U);
    EXPECT_EQ(failure("otpauth://totp/x?secret=X&" + megabyte("a=&")), "");
    EXPECT_EQ(failure("otpauth://totp/x?secret=X&" + megabyte("issuer=&")), invalidURL);
}

} // namespace MirrowvaleAuthenticator
