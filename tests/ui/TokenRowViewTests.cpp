#include "tests/support/Tokens.h"
#include "ui/screens/TokenRowView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <gtest/gtest.h>

namespace MirrowvaleAuthenticator {
namespace {

const Date instant = Date::fromSecondsSince1970(59);

TEST(TokenRowView, groupsSixCharactersAndNothingElse)
{
    const std::pair<const char*, const char*> cases[] = {
        {"123456", "123 456"},
        {"004213", "004 213"},
        {"------", "--- ---"},
        {"1234567", "1234567"},
        {"12345678", "12345678"},
        {"12345", "12345"},
        {"", ""},
        {"a\u0308bcdef", "a\u0308bc def"}, // a letter with its mark is one character
    };
    for (const auto& [code, shown] : cases) {
        EXPECT_EQ(TokenRowView::displayCode(QString::fromUtf8(code)).toStdString(), shown);
    }
}

TEST(TokenRowView, showsTheTokenAtAnInstant)
{
    struct Case {
        const char* what;
        void (*change)(AuthToken&);
        double instant;
        const char* issuer;
        const char* account;
        const char* code;
        const char* countdown;
        bool urgent;
        bool next;
    };
    const auto hotp = [](AuthToken& token) { token.kind = AuthToken::Kind::hotp; };
    const Case cases[] = {
        {"RFC 6238", [](AuthToken& token) { token.digits = 8; }, 59, "Bank", "ada", "94287082", "1s", true,
         false},
        {"six left", [](AuthToken&) {}, 54, "Bank", "ada", "287 082", "6s", false, false},
        {"five left", [](AuthToken&) {}, 55, "Bank", "ada", "287 082", "5s", true, false},
        {"a step begins", [](AuthToken&) {}, 60, "Bank", "ada", "359 152", "30s", false, false},
        {"no names", [](AuthToken& token) { token.issuer = token.account = ""; }, 54, "Token", "Account",
         "287 082", "6s", false, false},
        {"names of blanks", [](AuthToken& token) { token.issuer = token.account = " "; }, 54, " ", " ",
         "287 082", "6s", false, false},
        {"names like markup and placeholders",
         [](AuthToken& token) {
             token.issuer = "<b>x</b>";
             token.account = "%1";
         },
         54, "<b>x</b>", "%1", "287 082", "6s", false, false},
        {"no Base32", [](AuthToken& token) { token.secretBase32 = "1"; }, 54, "Bank", "ada", "--- ---", "6s",
         false, false},
        {"nine digits", [](AuthToken& token) { token.digits = 9; }, 54, "Bank", "ada", "--- ---", "6s", false,
         false},
        {"the longest step", [](AuthToken& token) { token.period = INT64_MAX; }, 0, "Bank", "ada", "755 224",
         "9223372036854775807s", false, false},
        {"counter-based", hotp, 54, "Bank", "ada", "755 224", "0s", true, true},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.what);
        AuthToken token = tokenNamed("Bank", "ada");
        test.change(token);
        const TokenRowView view(token, Date::fromSecondsSince1970(test.instant), false);
        EXPECT_EQ(view.issuer().toStdString(), test.issuer);
        EXPECT_EQ(view.account().toStdString(), test.account);
        EXPECT_EQ(view.displayCode().toStdString(), test.code);
        EXPECT_EQ(view.countdown().toStdString(), test.countdown);
        EXPECT_EQ(view.isUrgent(), test.urgent);
        EXPECT_EQ(view.offersNext(), test.next);
    }
}

TEST(TokenRowView, copiesTheBareCodeOrThePlaceholder)
{
    AuthToken token = tokenNamed("Bank");
    for (const char* expected : {"287082", "------"}) {
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
        TokenRowView(token, instant, false).copyCode();
        const QMimeData* data = QGuiApplication::clipboard()->mimeData();
        EXPECT_EQ(data->text().toStdString(), expected);
        EXPECT_EQ(data->data(QStringLiteral("x-kde-passwordManagerHint")), QByteArrayLiteral("secret"));
        token.secretBase32 = "not Base32!";
    }
}

} // namespace
} // namespace MirrowvaleAuthenticator
