#include "tests/ui/ScreenFixture.h"
#include "ui/screens/TokenListModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <functional>

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

    /// A "+" for each row that shows the acknowledgement, a "-" for each other.
    static std::string copied(const TokenListModel& model)
    {
        std::string signs;
        for (int row = 0; row < model.rowCount(); ++row) {
            signs += model.index(row).data(TokenListModel::Copied).toBool() ? '+' : '-';
        }
        return signs;
    }

    QObject context;
    std::string log;
};

TEST_F(TokenListModelTest, tellsTheNarrowestChange)
{
    // clang-format off
    const struct { const char* before; const char* after; const char* told; } cases[] = {
        {"", "abc", "+0,2 "}, {"abc", "abcd", "+3,3 ~0,2 "}, {"abcdef", "adf", "-1,2 -2,2 ~0,2 "},
        {"abc", "acd", "-1,1 +2,2 ~0,1 "}, {"abab", "bb", "-0,0 -1,1 ~0,1 "}, {"abc", "cba", "-0,1 +1,2 ~0,0 "},
    };
    // clang-format on
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

TEST_F(TokenListModelTest, theAcknowledgementBelongsToTheToken)
{
    list("abbc");
    store.tokens.modify([](auto& tokens) { tokens[2].issuer = "B"; }); // a row of its own with the same id
    TokenListModel model(store, Date());
    EXPECT_EQ(shown(model), "abBc");
    model.copyCode(2);
    list("bbc");
    model.render();
    EXPECT_EQ(copied(model), "++-");
}

TEST_F(TokenListModelTest, theAcknowledgementEndsByTheFirstPressOrWhenTheTokenLeaves)
{
    list("ab");
    TokenListModel model(store, Date());
    // Timers fire in the order in which they fall due, however busy the machine is.
    const auto after = [this](int milliseconds, const std::function<void()>& action) {
        QTimer::singleShot(milliseconds, Qt::PreciseTimer, &context, action);
    };
    const auto look = [&] { log += copied(model) + " "; };
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
    EXPECT_TRUE(QTest::qWaitFor([this] { return log.size() == 12; }, 30000));
    EXPECT_EQ(log, "+- ++ -+ -- ");
}

} // namespace
} // namespace MirrowvaleAuthenticator
