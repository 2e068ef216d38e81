#include "tests/ui/SceneFixture.h"

namespace MirrowvaleAuthenticator {

using FormHandTest = SceneTest;

TEST_F(FormHandTest, aPressIsOneStepOrRepeatsWhileItIsHeld)
{
    openForm();
    AddTokenView& form = *contentView.addTokenView();
    QQuickItem* plus = shown(window->contentItem(), [](const QQuickItem& item) {
                           return item.property("subject").toString().startsWith(QStringLiteral("Period"));
                       }).constLast();
    plus->forceActiveFocus(Qt::TabFocusReason);
    for (const bool byKey : {false, true}) {
        const auto begin = [&] {
            byKey ? QTest::keyPress(window.get(), Qt::Key_Space) : press(middle(*plus));
        };
        const auto end = [&] {
            byKey ? QTest::keyRelease(window.get(), Qt::Key_Space) : release(middle(*plus));
        };
        form.setPeriod(15);
        begin();
        end();
        EXPECT_EQ(form.period(), 20);
        begin();
        EXPECT_TRUE(QTest::qWaitFor([&form] { return form.period() >= 30; }));
        const auto held = form.period();
        end();
        EXPECT_EQ(form.period(), held);
    }
}

TEST_F(FormHandTest, aKeyActsOnceWhereItWasPressedAndTheRingComesBackWithTheWindow)
{
    openForm();
    for (const char* next : {"Issuer", "Account"}) {
        hold(Qt::Key_Return);
        EXPECT_EQ(window->activeFocusItem()->property("placeholder"), QLatin1String(next));
    }
    contentView.addTokenView()->setDigits(7);
    button("Increment")->forceActiveFocus(Qt::TabFocusReason);
    hold(Qt::Key_Return);
    EXPECT_EQ(contentView.addTokenView()->digits(), 8);
    EXPECT_TRUE(ringIsAt(button("Decrement"))) << "at the limit";
    contentView.addTokenView()->setDigits(6);
    button("Increment")->forceActiveFocus(Qt::TabFocusReason);
    repeat(Qt::Key_Return);
    EXPECT_EQ(contentView.addTokenView()->digits(), 6);
    goElsewhereAndBack();
    EXPECT_TRUE(ringIsAt(button("Increment")));
}

TEST_F(FormHandTest, aSheetThatIsDismissedWhileItIsDrawnDownTakesTheFormAlong)
{
    openForm();
    const QPoint bar(195, 66);
    pull(bar, bar + QPoint(0, 300));
    QTest::keyClick(window.get(), Qt::Key_Escape);
    move(bar + QPoint(0, 310));
    release(bar + QPoint(0, 310));
    EXPECT_TRUE(QTest::qWaitFor([this] { return contentView.addTokenView() == nullptr; }));
}

TEST_F(FormHandTest, theFormPullsTheSheetAlongFromItsTopAlone)
{
    open("a");
    window->resize(390, 330);
    openSheet();
    const QQuickItem* form = formAround(window->activeFocusItem());
    drag({10, 300}, {10, 200});
    ASSERT_GT(form->property("contentY").toDouble(), 40);
    drag({10, 80}, {10, 320});
    EXPECT_TRUE(QTest::qWaitFor([&] { return form->property("contentY") == 0.0; }));
    EXPECT_TRUE(QTest::qWaitFor([this] { return sheetIsUp(); }));
    EXPECT_TRUE(contentView.showingAdd());
    drag({10, 80}, {10, 320});
    EXPECT_TRUE(QTest::qWaitFor([this] { return contentView.addTokenView() == nullptr; }));
}

TEST_F(FormHandTest, theSheetStaysUpInAWindowOfAnySizeAndShowsWhatHasFocus)
{
    openForm();
    for (const QSize size : {QSize(844, 390), QSize(390, 845), QSize(320, 320)}) {
        window->resize(size);
        ASSERT_TRUE(QTest::qWaitFor([&] { return window->contentItem()->size() == size; }));
        EXPECT_TRUE(sheetIsUp()) << size.height();
    }
    const QQuickItem* form = formAround(window->activeFocusItem());
    contentView.addTokenView()->setImportURI(QStringLiteral("otpauth://totp/x"));
    contentView.addTokenView()->importFromURI();
    for (int letter = 0; letter < 200; ++letter) {
        QTest::keyClick(window.get(), Qt::Key_A);
    }
    QGuiApplication::clipboard()->setText(QString(600, u'x'));
    const QQuickItem& uri = *window->activeFocusItem();
    const auto seesCaret = [&] { return isInSight(uri, uri.property("cursorRectangle").toRectF(), *form); };
    EXPECT_TRUE(QTest::qWaitFor(seesCaret));
    QTest::keyClick(window.get(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor(seesCaret));
    for (int press = 0; press < 12; ++press) {
        QTest::keyClick(window.get(), Qt::Key_Tab);
        const QQuickItem& item = *window->activeFocusItem();
        EXPECT_TRUE(sheet()->isAncestorOf(&item)) << "Tab goes round in the sheet";
        if (form->isAncestorOf(&item) && &item != &uri) {
            EXPECT_TRUE(QTest::qWaitFor([&] { return isInSight(item, item.boundingRect(), *form); }))
                << item.metaObject()->className();
        }
    }
}

} // namespace MirrowvaleAuthenticator
