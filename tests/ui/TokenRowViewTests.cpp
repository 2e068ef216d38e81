#include "tests/support/Tokens.h"
#include "ui/screens/TokenRowView.h"

#include <QClipboard>
#include <QGuiApplication>

#include <gtest/gtest.h>
#include <tuple>

namespace MirrowvaleAuthenticator {
namespace {

TEST(TokenRowView, showsTheTokenAtAnInstantAndCopiesTheCodeWithoutItsGap)
{
    const std::tuple<void (*)(AuthToken&), double, const char*> cases[] = {
        {[](AuthToken& token) { token.digits = 8; }, 59, "Bank, ada, 94287082, 1s, urgent"}, // RFC 6238
        {[](AuthToken& token) { token.digits = 7; }, 59, "Bank, ada, 4287082, 1s, urgent"},
        {[](AuthToken&) {}, 54, "Bank, ada, 287 082, 6s"},
        {[](AuthToken&) {}, 55, "Bank, ada, 287 082, 5s, urgent"},
        {[](AuthToken&) {}, 60, "Bank, ada, 359 152, 30s"},
        {[](AuthToken& token) { token.issuer = token.account = ""; }, 54, "Token, Account, 287 082, 6s"},
        {[](AuthToken& token) { token.issuer = token.account = " "; }, 54, " ,  , 287 082, 6s"},
        {[](AuthToken& token) { token.issuer = "<b>x</b>"; }, 54, "<b>x</b>, ada, 287 082, 6s"},
        {[](AuthToken& token) { token.account = "%1"; }, 54, "Bank, %1, 287 082, 6s"},
        {[](AuthToken& token) { token.secretBase32 = "1"; }, 54, "Bank, ada, --- ---, 6s"},
        {[](AuthToken& token) { token.period = INT64_MAX; }, 0, "Bank, ada, 755 224, 9223372036854775807s"},
        {[](AuthToken& token) { token.kind = AuthToken::Kind::hotp; }, 54,
         "Bank, ada, 755 224, 0s, urgent, Next"},
    };
    for (const auto& [change, second, expected] : cases) {
        AuthToken token = tokenNamed("Bank", "ada");
        change(token);
        const TokenRowView view(token, Date::fromSecondsSince1970(second), false);
        QStringList shown{view.issuer(), view.account(), view.displayCode(), view.countdown()};
        shown += view.isUrgent() ? QStringList{QStringLiteral("urgent")} : QStringList();
        shown += view.offersNext() ? QStringList{QStringLiteral("Next")} : QStringList();
        EXPECT_EQ(shown.join(QStringLiteral(", ")).toStdString(), expected);
        view.copyCode();
        EXPECT_EQ(QGuiApplication::clipboard()->text(), view.displayCode().remove(u' '));
    }
}

} // namespace
} // namespace MirrowvaleAuthenticator
