#include "tests/ui/ScreenFixture.h"
#include "ui/screens/TokenListModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace MirrowvaleAuthenticator {
namespace {

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

    /// How many rows were removed, or inserted, by the model's own account.
    static int rowsIn(const QSignalSpy& changes)
    {
        int rows = 0;
        for (const QVariantList& change : changes) {
            rows += change.at(2).toInt() - change.at(1).toInt() + 1;
        }
        return rows;
    }
};

TEST_F(TokenListModelTest, removesAndInsertsNoMoreThanChanges)
{
    // clang-format off
    const struct { const char* before; const char* after; int removed; int inserted; } cases[] = {
        {"", "abc", 0, 3}, {"abc", "abcd", 0, 1}, {"abcdef", "adf", 3, 0}, {"abc", "acd", 1, 1},
        {"abab", "bb", 2, 0}, {"abc", "cba", 2, 2},
    };
    // clang-format on
    for (const auto& test : cases) {
        SCOPED_TRACE(std::string(test.before) + " to " + test.after);
        list(test.before);
        TokenListModel model(store, Date());
        const QAbstractItemModelTester rules(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
        const QSignalSpy removals(&model, &TokenListModel::rowsRemoved);
        const QSignalSpy insertions(&model, &TokenListModel::rowsInserted);
        list(test.after);
        model.render();
        EXPECT_EQ(issuers(model), test.after);
        EXPECT_EQ(rowsIn(removals), test.removed);
        EXPECT_EQ(rowsIn(insertions), test.inserted);
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
