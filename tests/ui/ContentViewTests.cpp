#include "tests/ui/ScreenFixture.h"
#include "ui/ContentView.h"

#include <QCoreApplication>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace MirrowvaleAuthenticator {
namespace {

using ContentViewTest = ScreenTest;

TEST_F(ContentViewTest, ticksOnceASecondAlsoWhileTheSheetIsUp)
{
    list("a");
    ContentView view(store);
    const Date first = view.now();
    QSignalSpy told(view.rows(), &TokenListModel::dataChanged);
    ASSERT_TRUE(told.wait());
    const Date second = view.now();
    EXPECT_GT(second.secondsSince1970(), first.secondsSince1970());
    view.setShowingAdd(true);
    ASSERT_TRUE(told.wait());
    EXPECT_GT(view.now().secondsSince1970(), second.secondsSince1970());
}

TEST_F(ContentViewTest, rendersChangesOfTheStoreOnceAfterTheyAreMade)
{
    ContentView view(store);
    EXPECT_TRUE(view.isEmpty());
    QSignalSpy emptied(&view, &ContentView::emptyChanged);
    QSignalSpy inserted(view.rows(), &TokenListModel::rowsInserted);
    list("a");
    list("ab");
    EXPECT_EQ(view.rows()->rowCount(), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(view.rows()->rowCount(), 2);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(emptied.count(), 1);
    EXPECT_FALSE(view.isEmpty());
}

TEST_F(ContentViewTest, deletesEveryTokenOfTheRowsIdentityAndSaves)
{
    list("abac");
    store.persist();
    ContentView view(store);
    view.deleteToken(2);
    EXPECT_EQ(listed(), "bc");
    EXPECT_EQ(view.rows()->rowCount(), 2);
    EXPECT_EQ(saves(), 2U);

    credentials.answerAlways(ScriptedCredentialStore::Operation::update, errSecInteractionNotAllowed);
    view.deleteToken(1);
    EXPECT_EQ(listed(), "b");
    EXPECT_EQ(view.rows()->rowCount(), 1);
    view.deleteToken(0);
    EXPECT_TRUE(view.isEmpty());
}

TEST_F(ContentViewTest, nextAdvancesTheRowsToken)
{
    list("ab");
    store.persist();
    ContentView view(store);
    view.advanceCounter(1);
    EXPECT_EQ(store.tokens->at(0).counter, 0U);
    EXPECT_EQ(store.tokens->at(1).counter, 1U);
    EXPECT_EQ(saves(), 2U);
}

TEST_F(ContentViewTest, actionsOnRowsThatHaveLeftDoNothing)
{
    list("ab");
    store.persist();
    ContentView view(store);
    store.tokens = tokensNamed("b"); // not rendered yet: the first row still stands for the one that left
    for (const int row : {0, -1, 2}) {
        view.deleteToken(row);
        view.advanceCounter(row);
        view.copyCode(row);
    }
    EXPECT_EQ(listed(), "b");
    EXPECT_EQ(store.tokens->at(0).counter, 0U);
    EXPECT_EQ(saves(), 1U);
}

TEST_F(ContentViewTest, everyPresentationHasAFormOfItsOwn)
{
    ContentView view(store);
    EXPECT_EQ(view.addTokenView(), nullptr);
    view.setShowingAdd(true);
    const QPointer<AddTokenView> first = view.addTokenView();
    first->setSecret(QStringLiteral("ABC"));
    first->cancel();
    EXPECT_FALSE(view.showingAdd());
    EXPECT_EQ(view.addTokenView(), first); // its sheet is still sliding away

    view.setShowingAdd(true);
    EXPECT_NE(view.addTokenView(), first);
    EXPECT_EQ(view.addTokenView()->secret(), QString());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(first, nullptr);

    view.discardAddTokenView(); // the report of the first sheet's end comes late
    EXPECT_NE(view.addTokenView(), nullptr);
    view.setShowingAdd(false);
    view.discardAddTokenView();
    EXPECT_EQ(view.addTokenView(), nullptr);
}

} // namespace
} // namespace MirrowvaleAuthenticator
