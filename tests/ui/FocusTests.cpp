#include "tests/ui/SceneFixture.h"

#include <QAccessible>

#include <algorithm>
#include <cmath>
#include <functional>
#include <tuple>
#include <vector>

namespace MirrowvaleAuthenticator {

using FocusTest = SceneTest;

TEST_F(FocusTest, aDeletedRowPassesFocusOnAndShowsItWhereKeysWereUsed)
{
    open("abc");
    for (const bool byKeys : {false, true}) {
        list("abc");
        ASSERT_TRUE(QTest::qWaitFor([this] { return row(2) != nullptr; }));
        for (const std::string_view left : {"ac", "a", ""}) {
            QQuickItem* gone = row(listed().size() > 1 ? 1 : 0);
            if (byKeys) {
                gone->forceActiveFocus(Qt::TabFocusReason);
                QTest::keyClick(window.get(), Qt::Key_Delete);
                QTest::keyClick(window.get(), Qt::Key_Space);
            } else {
                swipe(*gone);
                tap(*awaited("Delete"));
            }
            ASSERT_TRUE(QTest::qWaitFor([this, left] { return listed() == left; })) << left;
            QCoreApplication::processEvents();
            const QQuickItem* next = left.empty() ? button("Add token") : row(left == "ac" ? 1 : 0);
            EXPECT_EQ(ringIsAt(next), byKeys) << left;
            EXPECT_EQ(ringIsAt(window->activeFocusItem()), byKeys) << left;
            EXPECT_TRUE(next->hasActiveFocus() || !left.empty());
        }
    }
}

TEST_F(FocusTest, focusGoesToAnyRowAndStaysThereWhateverHappensToOthers)
{
    open("abc");
    QQuickItem* copy = button("Copy code", row(1));
    QAccessible::queryAccessibleInterface(copy)->actionInterface()->doAction(
        QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(view->property("currentIndex"), 1);
    EXPECT_EQ(window->activeFocusItem(), copy);
    EXPECT_TRUE(ringIsAt(copy));
    QMetaObject::invokeMethod(row(0), "deleteRequested");
    ASSERT_EQ(listed(), "bc");
    EXPECT_EQ(window->activeFocusItem(), copy);
    EXPECT_TRUE(ringIsAt(copy));
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(view)->state().focused) << "which only holds it";

    QQuickItem* selected = row(1);
    QTest::mouseDClick(window.get(), Qt::LeftButton, {},
                       middle(*selected->property("code").value<QQuickItem*>()));
    QMetaObject::invokeMethod(row(0), "deleteRequested");
    ASSERT_EQ(listed(), "c");
    EXPECT_EQ(window->activeFocusItem(), selected) << "not its code, whose selection has gone";
}

TEST_F(FocusTest, focusStaysWhereItCanBeSeen)
{
    open("abc");
    const std::tuple<const char*, int, std::function<void()>> ways[] = {
        {"by a key", 1, [this] { QTest::keyClick(window.get(), Qt::Key_Escape); }},
        {"by a finger", 1, [this] { tap(*row(2)); }},
        {"from another row", 2,
         [this] {
             QTest::keyClick(window.get(), Qt::Key_Down);
             QTest::keyClick(window.get(), Qt::Key_Escape);
         }},
        {"by the sheet", 1,
         [this] {
             openSheet();
             contentView.setShowingAdd(false);
         }},
    };
    for (const auto& [name, next, close] : ways) {
        row(1)->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(window.get(), Qt::Key_Delete);
        ASSERT_EQ(window->activeFocusItem(), awaited("Delete"));
        close();
        EXPECT_TRUE(QTest::qWaitFor([this] { return button("Delete") == nullptr; })) << name;
        EXPECT_TRUE(QTest::qWaitFor([&] { return ringIsAt(row(next)); })) << name;
    }
}

TEST_F(FocusTest, keysLeadToAllOfEveryRowHoweverHighItIsAndAllAreReadInTheirOrder)
{
    open("abcdefghijklmnopqrstuvwxyz");
    store.tokens.modify([](std::vector<AuthToken>& tokens) {
        for (std::size_t index = 0; index < tokens.size();
             ++index) { // one line, some, more than fit the view
            tokens[index].issuer = std::string(index == 7 ? 900 : 1 + 40 * (index % 4), 'w');
        }
    });
    QCoreApplication::processEvents();
    const auto current = [this] { return view->property("currentIndex").toInt(); };
    for (const auto& [key, last] : {std::pair{Qt::Key_Home, 0}, {Qt::Key_End, 25}, {Qt::Key_Home, 0}}) {
        QTest::keyClick(window.get(), key);
        EXPECT_EQ(current(), last);
    }
    for (const auto& [key, last] : {std::pair{Qt::Key_PageDown, 25}, {Qt::Key_PageUp, 0}}) {
        for (int presses = 0; current() != last; ++presses) {
            ASSERT_LT(presses, 20);
            const double place = scrolled();
            QTest::keyClick(window.get(), key);
            EXPECT_LE(std::abs(scrolled() - place), view->height()) << "before row " << current();
            EXPECT_TRUE(ringIsAt(row(current())));
        }
    }
    while (current() <= 7) {
        const double place = scrolled();
        QTest::keyClick(window.get(), Qt::Key_Down);
        EXPECT_LE(scrolled() - place, view->height()) << "before row " << current();
    }
    QTest::keyClick(window.get(), Qt::Key_Up);
    QTest::keyClick(window.get(), Qt::Key_Tab);
    const QQuickItem* copy = button("Copy code", row(7));
    EXPECT_TRUE(ringIsAt(copy));
    EXPECT_TRUE(isInSight(*copy, copy->boundingRect(), *view));

    QTest::keyClick(window.get(), Qt::Key_Home);
    auto* told = QAccessible::queryAccessibleInterface(view);
    for (const char* action : {"Scroll Down", "Scroll Down", "Scroll Up", "Scroll Up"}) {
        told->actionInterface()->doAction(QLatin1String(action));
        std::vector<int> tops;
        for (int child = 0; child < told->childCount(); ++child) {
            if (told->child(child)->role() == QAccessible::ListItem
                && !told->child(child)->state().invisible) {
                tops.push_back(told->child(child)->rect().top());
            }
        }
        EXPECT_GT(tops.size(), 3U);
        EXPECT_TRUE(std::ranges::is_sorted(tops)) << action;
    }
}

} // namespace MirrowvaleAuthenticator
