#include "tests/ui/ScreenFixture.h"
#include "ui/screens/ContentView.h"

#include <QCoreApplication>
#include <QPointer>
#include <QSignalSpy>

namespace MirrowvaleAuthenticator {

using ContentViewTest = ScreenTest;

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

    credentials.answerNext(ScriptedCredentialStore::Operation::update, errSecInteractionNotAllowed);
    view.deleteToken(1);
    EXPECT_EQ(listed(), "b") << "a save that fails brings nothing back";
}

TEST_F(ContentViewTest, rowsThatLagBehindTheStoreStandForTheirOwnTokenAlone)
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
    EXPECT_FALSE(view.rows()->index(0).data(TokenListModel::Issuer).isValid());
    EXPECT_EQ(view.rows()->index(1).data(TokenListModel::Issuer), QStringLiteral("b"));
}

TEST_F(ContentViewTest, everyPresentationHasAFormOfItsOwn)
{
    ContentView view(store);
    EXPECT_EQ(view.addTokenView(), nullptr);
    view.setShowingAdd(true);
    const QPointer<AddTokenView> first = view.addTokenView();
    first->cancel();
    EXPECT_FALSE(view.showingAdd());
    EXPECT_EQ(view.addTokenView(), first); // its sheet is still sliding away

    view.setShowingAdd(true);
    EXPECT_NE(view.addTokenView(), first);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(first, nullptr);

    view.discardAddTokenView(); // the report of the first sheet's end comes late
    EXPECT_NE(view.addTokenView(), nullptr);
}

} // namespace MirrowvaleAuthenticator
