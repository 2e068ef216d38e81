#include "tests/ui/SceneFixture.h"
#include "ui/app/WindowVisibility.h"

#include <functional>

namespace MirrowvaleAuthenticator {

using ListHandTest = SceneTest;

TEST_F(ListHandTest, theListStaysWhereItWasScrolledTo)
{
    open("abcdefghijklmnopqrstuvwxyz");
    drag({200, 500}, {200, 150});
    ASSERT_TRUE(QTest::qWaitFor([this] { return !view->property("moving").toBool(); }));
    const double place = scrolled();
    ASSERT_GT(place, 100);

    goElsewhereAndBack();
    EXPECT_EQ(scrolled(), place) << "back from another window";

    openSheet();
    contentView.setShowingAdd(false);
    ASSERT_TRUE(QTest::qWaitFor([this] { return contentView.addTokenView() == nullptr; }));
    EXPECT_EQ(scrolled(), place) << "back from the sheet";

    QTest::keyClick(window.get(), Qt::Key_Down);
    EXPECT_TRUE(ringIsAt(row(0))) << "the focus ring shows";
    EXPECT_LT(scrolled(), place);

    view->setProperty("contentY", place);
    QTest::keyClick(window.get(), Qt::Key_Return);
    EXPECT_LT(scrolled(), place);
    EXPECT_EQ(button("Copied"), nullptr) << "nothing that is out of sight";
    QTest::keyClick(window.get(), Qt::Key_Return);
    EXPECT_NE(button("Copied"), nullptr);
    for (const int height : {165, 120}) { // the title and a row take more
        window->resize(390, height);
        ASSERT_TRUE(QTest::qWaitFor([&] { return window->contentItem()->height() == height; }));
        ASSERT_TRUE(QTest::qWaitFor([this] { return button("Copied") == nullptr; }));
        QTest::keyClick(window.get(), Qt::Key_Return);
        QTest::keyClick(window.get(), Qt::Key_Return);
        EXPECT_NE(button("Copied"), nullptr) << height;
    }
}

TEST_F(ListHandTest, everyQuickTapCountsAndAHeldReturnOnce)
{
    open("a");
    QQuickItem* next = makeFirstCounted();
    for (int time = 0; time < 3; ++time) {
        tap(*next);
    }
    QTest::mouseDClick(window.get(), Qt::LeftButton, {}, middle(*next));
    EXPECT_EQ(store.tokens->front().counter, 5U);

    press(middle(*next));
    move(middle(*next) + QPoint(0, 80));
    release(middle(*next) + QPoint(0, 80));
    EXPECT_EQ(store.tokens->front().counter, 5U) << "a finger that left the button";

    next->forceActiveFocus(Qt::TabFocusReason);
    hold(Qt::Key_Return);
    EXPECT_EQ(store.tokens->front().counter, 6U);
}

TEST_F(ListHandTest, theClockStandsWhileNobodyCanSeeARow)
{
    open("a");
    openSheet();
    const auto saver = [this](bool active) {
        QMetaObject::invokeMethod(window->findChild<WindowVisibility*>(), "screenSaverChanged",
                                  Q_ARG(bool, active));
    };
    const std::pair<std::function<void()>, std::function<void()>> ways[] = {
        {[this] { window->hide(); }, [this] { window->show(); }},
        {[this] { window->showMinimized(); }, [this] { window->showNormal(); }},
        {[this] { list(""); }, // there is no row to see
         [this] {
             list("a");
             QCoreApplication::sendPostedEvents(&contentView);
         }},
        {[&] { saver(true); }, [&] { saver(false); }},
        {[&] { saver(true); },
         [this] { // which may never say that it is over
             QFocusEvent event(QEvent::FocusIn);
             QCoreApplication::sendEvent(window.get(), &event);
         }},
    };
    const auto now = [this] { return contentView.now().secondsSince1970(); };
    for (const auto& [leave, comeBack] : ways) {
        leave();
        QCoreApplication::processEvents();
        const double left = now();
        const auto tickIsOverdue = [left] { return Date::now().secondsSince1970() > left + 1.1; };
        ASSERT_TRUE(QTest::qWaitFor(tickIsOverdue));
        EXPECT_EQ(now(), left);
        double drawn = 0;
        const auto frames = QObject::connect(window.get(), &QQuickWindow::beforeSynchronizing, [&] {
            drawn = drawn > 0 ? drawn : now();
            const TokenRowView shown(store.tokens->front(), contentView.now(), false);
            EXPECT_EQ(row(0)->property("countdown"), shown.countdown());
        });
        window->update();
        QTest::qSleep(20); // a frame that was due already
        comeBack();
        ASSERT_TRUE(QTest::qWaitFor([&] { return drawn > 0; }));
        EXPECT_GT(drawn, left) << "the first frame is of that instant";
        QObject::disconnect(frames);
    }
    const double back = now();
    EXPECT_TRUE(QTest::qWaitFor([&] { return now() > back; })) << "stays";
}

TEST_F(ListHandTest, scrollingClosesAnOpenRowWhichServesItsNextTokenAsNew)
{
    open("abcdefghijklmnopqrstuvwxyz");
    swipe(*row(2));
    awaited("Delete");
    drag({200, 500}, {200, 350});
    EXPECT_TRUE(QTest::qWaitFor([this] { return button("Delete") == nullptr; }));
    drag({200, 350}, {200, 500});
    swipe(*row(1));
    awaited("Delete");
    contentView.copyCode(0);
    for (const double far : {800.0, 0.0}) {
        view->setProperty("contentY", view->property("originY").toDouble() + far);
        ASSERT_TRUE(QTest::qWaitFor([&] { return row(far > 0 ? 10 : 1) != nullptr; }));
        EXPECT_EQ(button("Delete"), nullptr) << far;
    }
    EXPECT_NE(button("Copied", row(0)), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([this] { return button("Copy code", row(0)) != nullptr; }));
}

TEST_F(ListHandTest, aSwipeOpensOneRowFromItsTrailingEdgeAndDeletesNothing)
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    open("abc");
    EXPECT_LT(middle(*button("Copy code", row(0))).x(), middle(*row(0)).x());
    EXPECT_LT(middle(*button("Add token")).x(), middle(*row(0)).x());
    for (const int index : {0, 1}) {
        const QPoint from(30, middle(*row(index)).y());
        drag(from, from + QPoint(340, 0));
        EXPECT_TRUE(QTest::qWaitFor([&] { return button("Delete") == button("Delete", row(index)); }));
        awaited("Delete");
    }
    contentView.rows()->setNow(Date());
    EXPECT_NE(button("Delete", row(1)), nullptr) << "open through ticks";
    EXPECT_EQ(listed(), "abc");
    openSheet();
    EXPECT_GT(middle(*button("Cancel")).x(), middle(*button("Save")).x());
}

TEST_F(ListHandTest, anOpenRowClosesByATapWhateverHappenedMeanwhile)
{
    open("abcdefghijklmnopqrstuvwxyz");
    const std::pair<const char*, std::function<void()>> openings[] = {
        {"another row was deleted",
         [this] {
             swipe(*row(2));
             QMetaObject::invokeMethod(row(4), "deleteRequested");
         }},
        {"the list was scrolled during the swipe",
         [this] {
             const QPoint from = middle(*row(2));
             pull(from, from - QPoint(150, 0));
             QMetaObject::invokeMethod(view, "movementStarted");
             rest();
             move(from - QPoint(151, 0));
             release(from - QPoint(151, 0));
         }},
    };
    drag(middle(*row(2)), middle(*row(2)) + QPoint(40, 0)); // opens nothing
    tap(*button("Copy code", row(1)));
    EXPECT_NE(button("Copied", row(1)), nullptr);
    for (const auto& [name, openOne] : openings) {
        openOne();
        awaited("Delete");
        ASSERT_TRUE(QTest::qWaitFor([this] { return !view->property("moving").toBool(); }));
        tap(*row(1));
        EXPECT_TRUE(QTest::qWaitFor([this] { return button("Delete") == nullptr; })) << name;
    }
    swipe(*row(2));
    tap(*awaited("Delete"));
    tap(*button("Copy code", row(0)));
    EXPECT_NE(button("Copied", row(0)), nullptr) << "while the deleted row fades";
}

} // namespace MirrowvaleAuthenticator
