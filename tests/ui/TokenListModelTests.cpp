#include "tests/ui/ScreenFixture.h"
#include "ui/screens/TokenListModel.h"
#include "ui/screens/TokenRowView.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <functional>
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

class TokenListModelTest : public ScreenTest {
protected:
    /// The issuers of a model's rows, or of those alone that show the acknowledgement.
    static std::string issuers(const TokenListModel& model, bool copiedAlone = false)
    {
        std::string issuers;
        for (int row = 0; row < model.rowCount(); ++row) {
            if (!copiedAlone || model.index(row).data(TokenListModel::Copied).toBool()) {
                issuers += model.index(row).data(TokenListModel::Issuer).toString().toStdString();
            }
        }
        return issuers;
    }
};

TEST_F(TokenListModelTest, keepsTheRowsThatStay)
{
    const std::tuple<const char*, const char*, int> cases[] = {
        // before, after, rows that have gone
        {"", "abc", 0},    {"abc", "abcd", 0}, {"abcdef", "adf", 3},
        {"abc", "acd", 1}, {"abab", "bb", 2},  {"abc", "cba", 2},
    };
    for (const auto& [before, after, gone] : cases) {
        SCOPED_TRACE(std::string(before) + " to " + after);
        list(before);
        TokenListModel model(store, Date());
        const QAbstractItemModelTester rules(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
        std::vector<QPersistentModelIndex> rows;
        for (int row = 0; row < model.rowCount(); ++row) {
            rows.emplace_back(model.index(row));
        }
        list(after);
        model.render();
        EXPECT_EQ(issuers(model), after);
        EXPECT_EQ(std::ranges::count_if(rows, [](const auto& row) { return !row.isValid(); }), gone);
    }
}

TEST_F(TokenListModelTest, theAcknowledgementBelongsToTheToken)
{
    list("abbc");
    store.tokens.modify([](auto& tokens) { tokens[2].issuer = "B"; }); // a row of its own with the same id
    TokenListModel model(store, Date());
    EXPECT_EQ(issuers(model), "abBc");
    model.copyCode(2);
    list("bbc");
    model.render();
    EXPECT_EQ(issuers(model, true), "bb");
}

TEST_F(TokenListModelTest, theAcknowledgementEndsByTheFirstPressOrWhenTheTokenLeaves)
{
    list("ab");
    TokenListModel model(store, Date());
    QObject context;
    std::string log;
    // Timers fire in the order in which they fall due, however busy the machine is.
    const auto after = [&](int milliseconds, const std::function<void()>& action) {
        QTimer::singleShot(milliseconds, Qt::PreciseTimer, &context, action);
    };
    const auto look = [&] { log += issuers(model, true) + ","; };
    model.copyCode(0);
    model.copyCode(1);
    list("a");
    model.render();
    list("ab");
    model.render();
    look();
    after(300, [&] {
        model.copyCode(1);
        after(1700, look);
    });
    after(700, [&] { model.copyCode(0); });
    after(1400, look);
    after(1650, look); // what was due for the token that had left ends nothing
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::ranges::count(log, ',') == 4; }, 30000));
    EXPECT_EQ(log, "a,ab,b,,");
}

} // namespace
} // namespace MirrowvaleAuthenticator
