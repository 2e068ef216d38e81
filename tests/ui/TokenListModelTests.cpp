#include "tests/ui/ScreenFixture.h"
#include "ui/screens/TokenListModel.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

namespace MirrowvaleAuthenticator {
namespace {

class TokenListModelTest : public ScreenTest {
protected:
    /// Writes down what a model tells: "-first,last", "+first,last", "~first,last".
    void record(const TokenListModel& model)
    {
        const auto write = [this](const char* sign) {
            return [this, sign](const QModelIndex&, int first, int last) {
                log += sign + std::to_string(first) + "," + std::to_string(last) + " ";
            };
        };
        QObject::connect(&model, &TokenListModel::rowsRemoved, &context, write("-"));
        QObject::connect(&model, &TokenListModel::rowsInserted, &context, write("+"));
        QObject::connect(&model, &TokenListModel::dataChanged, &context,
                         [changed = write("~")](const QModelIndex& first, const QModelIndex& last) {
                             changed({}, first.row(), last.row());
                         });
    }

    static std::string shown(const TokenListModel& model)
    {
        std::string issuers;
        for (int row = 0; row < model.rowCount(); ++row) {
            issuers += model.index(row).data(TokenListModel::Issuer).toString().toStdString();
        }
        return issuers;
    }

    static bool copied(const TokenListModel& model, int row)
    {
        return model.index(row).data(TokenListModel::Copied).toBool();
    }

    /// A mark on the time line: true once `milliseconds` are over. Timers fire in the order in which they
    /// fall due, however busy the machine is.
    static std::shared_ptr<bool> mark(int milliseconds)
    {
        auto over = std::make_shared<bool>(false);
        QTimer::singleShot(milliseconds, Qt::PreciseTimer, qApp, [over] { *over = true; });
        return over;
    }

    template <typename Condition>
    static void waitUntil(Condition condition)
    {
        ASSERT_TRUE(QTest::qWaitFor(condition, 30000));
    }

    QObject context;
    std::string log;
};

TEST_F(TokenListModelTest, tellsTheNarrowestChange)
{
    const struct {
        const char* before;
        const char* after;
        const char* told;
    } cases[] = {
        {"", "abc", "+0,2 "},
        {"abc", "abcd", "+3,3 ~0,2 "},
        {"abcdef", "adf", "-4,4 -1,2 ~0,2 "},
        {"abc", "acd", "-1,1 +2,2 ~0,1 "},
        {"abab", "bb", "-2,2 -0,0 ~0,1 "},
        {"abc", "cba", "-0,1 +1,2 ~0,0 "},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(std::string(test.before) + " to " + test.after);
        list(test.before);
        TokenListModel model(store, Date());
        const QAbstractItemModelTester rules(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
        record(model);
        log.clear();
        list(test.after);
        model.render();
        EXPECT_EQ(shown(model), test.after);
        EXPECT_EQ(log, test.told);
    }
}

TEST_F(TokenListModelTest, aTickTouchesWhatTimeChanges)
{
    list("ab");
    TokenListModel model(store, Date::fromSecondsSince1970(59));
    QSignalSpy ticks(&model, &TokenListModel::dataChanged);
    EXPECT_EQ(model.index(1).data(TokenListModel::DisplayCode).toString(), QStringLiteral("287 082"));

    model.setNow(Date::fromSecondsSince1970(60));
    EXPECT_EQ(ticks.takeFirst().at(2).value<QList<int>>(),
              (QList<int>{TokenListModel::DisplayCode, TokenListModel::Countdown, TokenListModel::Urgent}));
    EXPECT_EQ(model.index(1).data(TokenListModel::DisplayCode).toString(), QStringLiteral("359 152"));
}

TEST_F(TokenListModelTest, theAcknowledgementEndsByTheFirstPress)
{
    list("ab");
    TokenListModel model(store, Date());
    model.copyCode(1);
    const auto early = mark(1400);
    const auto second = mark(700);
    waitUntil([&] { return *second; });
    EXPECT_TRUE(copied(model, 1));
    EXPECT_FALSE(copied(model, 0));
    model.copyCode(1);
    const auto late = mark(1300);
    waitUntil([&] { return !copied(model, 1); });
    EXPECT_TRUE(*early);
    EXPECT_FALSE(*late);
}

TEST_F(TokenListModelTest, theAcknowledgementBelongsToTheToken)
{
    list("abbc");
    store.tokens.modify([](auto& tokens) { tokens[2].issuer = "B"; }); // a row of its own with the same id
    TokenListModel model(store, Date());
    EXPECT_EQ(shown(model), "abBc");
    model.copyCode(2);
    list("bbc");
    model.render();
    EXPECT_TRUE(copied(model, 0));
    EXPECT_TRUE(copied(model, 1));
    EXPECT_FALSE(copied(model, 2));

    // The token leaves and comes back: nothing is left of it, and what was due then ends nothing now.
    const auto stale = mark(1550);
    list("c");
    model.render();
    list("cb");
    model.render();
    EXPECT_FALSE(copied(model, 1));
    const auto pause = mark(300);
    waitUntil([&] { return *pause; });
    model.copyCode(1);
    waitUntil([&] { return !copied(model, 1); });
    EXPECT_TRUE(*stale);
}

} // namespace
} // namespace MirrowvaleAuthenticator
