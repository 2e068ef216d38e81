#include "core/OTPAuthURI.h"

#include <gtest/gtest.h>

// The fuzz target checks what the parts of a URI come to: it compares with a slow reference.

namespace MirrowvaleAuthenticator {

namespace {

using namespace std::string_literals;

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

TEST(OTPAuthURI, givesEachTokenAnIdOfItsOwnAndItsInstant)
{
    const auto before = Date::now().secondsSince1970();
    const auto token = parseOTPAuthURI("otpauth://totp?secret=X");
    EXPECT_GE(token.createdAt.secondsSince1970(), before);
    EXPECT_LE(token.createdAt.secondsSince1970(), Date::now().secondsSince1970());
    EXPECT_FALSE(parseOTPAuthURI("otpauth://totp?secret=X").id == token.id);
}

TEST(OTPAuthURI, isTakenInEveryFormOfAURIAndElseSaysWhyNot)
{
    // clang-format off
    const std::pair<const char*, std::vector<std::string>> failures[] = {
        {"", {
            "OTPAUTH://TOTP/x?SECRET=S", "otpauth://u:p@totp:99/x?secret=S#secret=T",
            "otpauth://:@%74otp:/x?%73ecret=S", "otpauth://totp/x?a=1&&secret=S&b&c=&&a=2",
            "otpauth://totp/x?a=%FF&secret=S&%ED%A0%80=%C3&%C3%A9=1&%C3%89=2&secret%FF=1",
        }},
        {"Enter a valid otpauth:// URI.", {
            "", "otpauth://totp/x?secret=X\n", "otpauth://totp/a b?secret=X", "otpauth://totp/é?secret=X",
            "otpauth://totp/x?secret=X|", "otpauth://totp/x?secret=X#a#b", "otpauth://totp/x?secret=X\0"s,
            "otpauth://totp/100%?secret=X", "otpauth://push/%FF", "otpauth://totp/x?secret=X&a=%zz",
            "otpauth://totp:x/?secret=X", "otpauth://totp/x?secret=X#%zz", "otpauth://totp/[a]?secret=X",
            "otpauth://a@totp@x/?secret=X", "otpauth://[::1/x?secret=X",
        }},
        {"Only TOTP and HOTP otpauth URIs are supported.", {
            "otpauth:", "otpauth:totp?secret=X", "otpauth://totp@x/x?secret=X", "otpauth://[::1]/x?secret=X",
        }},
        {"The otpauth URI does not contain a secret.", {"otpauth://totp/x#secret=X"}},
    };
    // clang-format on
    for (const auto& [message, uris] : failures) {
        for (const auto& uri : uris) {
            EXPECT_EQ(failure(uri), message) << uri;
        }
    }
}

TEST(OTPAuthURI, answersTextsOfAMegabyteWhateverTheyHold)
{
    const auto filled = [](std::string uri, std::string filling) {
        while (filling.size() < 1'000'000) {
            filling += filling;
        }
        return uri.replace(uri.find('*'), 1, filling);
    };
    for (const auto* piece :
         {"a", ":", "/", "%25", "%CC%81", "%0D%0A", "%FF", "%", "&", "=", "?", "@", "[", "é"}) {
        for (const auto* place :
             {"*", "otpauth://*/x?secret=X", "otpauth://totp:*/x?secret=X", "otpauth://totp/*?secret=X",
              "otpauth://totp/x?secret=*&issuer=b", "otpauth://totp/x?secret=X&*",
              "otpauth://totp/x?secret=X&digits=*&counter=1", "otpauth://totp/x?secret=X#*"}) {
            EXPECT_NO_THROW(failure(filled(place, piece))) << place << " with " << piece;
        }
    }
    EXPECT_EQ(parseOTPAuthURI(filled("otpauth://totp/*a:b?secret=X", ":")).issuer, "a");
    EXPECT_EQ(parseOTPAuthURI(filled("otpauth://totp/x?secret=*", "a%20")).secretBase32.size(), 262'144U);
    EXPECT_EQ(failure(filled("otpauth://totp/x?secret=X&*", "a=&")), "");
}

} // namespace MirrowvaleAuthenticator
