#include "tests/ui/SceneFixture.h"

#include <QAccessible>

#include <dlfcn.h>
#include <functional>
#include <tuple>

namespace MirrowvaleAuthenticator {

/// The menus, in whatever text size, and what a mouse does besides.
class MenuTest : public SceneTest {
protected:
    QQuickItem* code(int index) const { return row(index)->property("code").value<QQuickItem*>(); }

    void hold(const QQuickItem& item)
    {
        press(middle(item));
        EXPECT_TRUE(QTest::qWaitFor([this] { return popup() != nullptr; }));
        move(middle(item) - QPoint(60, 0)); // no finger rests quite still
        release(middle(item) - QPoint(60, 0));
    }

    void mouseDrag(QPoint from, QPoint to)
    {
        QTest::mousePress(window.get(), Qt::LeftButton, {}, from);
        for (int step = 1; step <= 10; ++step) {
            QTest::mouseMove(window.get(), from + (to - from) * step / 10);
        }
        rest();
        QTest::mouseRelease(window.get(), Qt::LeftButton, {}, to);
    }
};

TEST_F(MenuTest, aRowHasOneMenuBesideItHoweverItIsAskedFor)
{
    const auto arePopupsLoaded = [] {
        return dlopen("libQt6QuickTemplates2.so.6", RTLD_LAZY | RTLD_NOLOAD) != nullptr;
    };
    const bool wereLoaded = arePopupsLoaded();
    open("abc");
    EXPECT_EQ(arePopupsLoaded(), wereLoaded) << "each start waits for what few ever need";
    window->resize(390, 1000);
    makeFirstCounted();
    const auto rightClick = [this](const QQuickItem& item) {
        QTest::mouseClick(window.get(), Qt::RightButton, {}, middle(item));
    };
    const std::tuple<const char*, int, std::function<void()>> ways[] = {
        {"the menu's key", 0, [this] { QTest::keyClick(window.get(), Qt::Key_Menu); }},
        {"the other key", 0, [this] { QTest::keyClick(window.get(), Qt::Key_F10, Qt::ShiftModifier); }},
        {"a right click on a row", 1, [&] { rightClick(*row(1)); }},
        {"a right click on a code", 2, [&] { rightClick(*code(2)); }},
        {"a finger that rests on a row", 0, [&] { hold(*row(0)); }},
        {"a finger that rests on a code", 1, [&] { hold(*code(1)); }},
        {"a right click beside an open row", 0,
         [&] {
             swipe(*row(1));
             awaited("Delete");
             rightClick(*row(0));
         }},
    };
    setTextScale(2);
    for (const auto& [name, index, ask] : ways) {
        SCOPED_TRACE(name);
        row(0)->forceActiveFocus();
        row(0)->setProperty("visualFocus", true);
        ask();
        ASSERT_TRUE(QTest::qWaitFor([this] { return popup() != nullptr; }));
        EXPECT_EQ(entries().join(u'|'),
                  index == 0 ? QStringLiteral("Copy code|Next|Delete") : QStringLiteral("Copy code|Delete"));
        const QRectF place = popup()->mapRectToScene(popup()->boundingRect());
        EXPECT_TRUE(QRectF(QPointF(), window->size()).contains(place));
        EXPECT_FALSE(place.intersects(row(index)->mapRectToScene(row(index)->boundingRect())));
        const QQuickItem& first = *window->activeFocusItem();
        EXPECT_EQ(first.property("text"), QStringLiteral("Copy code"));
        EXPECT_EQ(QAccessible::queryAccessibleInterface(window->activeFocusItem())->role(),
                  QAccessible::MenuItem);
        EXPECT_EQ(first.width(), first.implicitWidth()) << "its widest";
        EXPECT_TRUE(QTest::qWaitFor([&] { return row(index)->property("offset") == 0.0; }));
        QTest::keyClick(window.get(), Qt::Key_Escape);
        EXPECT_EQ(popup(), nullptr);
        const bool selects = code(index)->property("selectedText") != QString();
        EXPECT_EQ(selects, std::string_view(name) == "a finger that rests on a code");
        EXPECT_EQ(window->activeFocusItem(), selects ? code(index) : row(0));
        EXPECT_EQ(ringIsAt(row(0)), !selects);
        QTest::keyClick(window.get(), Qt::Key_Escape);
        EXPECT_EQ(code(index)->property("selectedText"), QString());
    }
}

TEST_F(MenuTest, aRowsMenuActsOnItsRow)
{
    open("abc");
    makeFirstCounted();
    const auto choose = [this](int index, int downs) {
        row(index)->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(window.get(), Qt::Key_Menu);
        for (int press = 0; press < downs; ++press) {
            QTest::keyClick(window.get(), Qt::Key_Down);
        }
        QTest::keyClick(window.get(), Qt::Key_Return);
        EXPECT_EQ(popup(), nullptr);
    };
    QGuiApplication::clipboard()->clear();
    choose(1, 0);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), row(1)->property("displayCode").toString().remove(u' '));
    EXPECT_TRUE(clipboardHasHint());
    choose(0, 1);
    EXPECT_EQ(store.tokens->front().counter, 1U);
    choose(1, 1);
    EXPECT_EQ(listed(), "ac");
    EXPECT_TRUE(ringIsAt(row(1)));
    QTest::mouseClick(window.get(), Qt::RightButton, {}, middle(*row(0)));
    awaited("Next");
    QTest::mouseClick(window.get(), Qt::LeftButton, {}, {200, 590});
    EXPECT_EQ(popup(), nullptr) << "a press elsewhere";
}

TEST_F(MenuTest, aMouseSelectsInACodeAndSwipesElsewhereAsAFingerDoesEverywhere)
{
    open("ab");
    const QRect place = code(0)->mapRectToScene(code(0)->boundingRect()).toRect();
    const auto y = place.center().y();
    const QPoint name = row(0)->mapToScene({200, 20}).toPoint();
    mouseDrag({place.left() + 1, y}, {place.right() - 1, y});
    EXPECT_EQ(code(0)->property("selectedText"), row(0)->property("displayCode"));
    mouseDrag({place.center().x() + 5, y}, {place.left() - 20, y});
    const QString half = row(0)->property("displayCode").toString().first(4);
    EXPECT_EQ(code(0)->property("selectedText").toString().trimmed(), half.trimmed());
    contentView.rows()->setNow(Date::fromSecondsSince1970(59));
    EXPECT_EQ(code(0)->property("selectedText").toString().trimmed(),
              row(0)->property("displayCode").toString().first(3))
        << "follows the code";
    EXPECT_EQ(button("Delete"), nullptr);
    mouseDrag(name, name - QPoint(150, 0));
    awaited("Delete");
    QTest::keyClick(window.get(), Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([this] { return button("Delete") == nullptr; }));
    drag({place.right() - 1, y}, {place.right() - 151, y});
    awaited("Delete");
    EXPECT_EQ(code(0)->property("selectedText"), QString());
}

TEST_F(MenuTest, aPointerThatRestsOnASymbolIsToldItsNameAndItsKey)
{
    open("a");
    for (const auto& [title, told] :
         {std::pair{"Add token", "Add token|Ctrl+N"}, {"Copy code", "Copy code"}}) {
        QQuickItem* symbol = button(title);
        QTest::mouseMove(window.get(), middle(*symbol));
        ASSERT_TRUE(QTest::qWaitFor([this] { return popup() != nullptr; })) << title;
        QStringList texts;
        const QRectF surface = popup()->mapRectToScene(popup()->boundingRect());
        EXPECT_TRUE(QRectF(QPointF(), window->size()).contains(surface));
        for (const QQuickItem* text : shown(popup(), "QQuickText")) {
            texts += text->property("text").toString();
            EXPECT_TRUE(surface.contains(text->mapRectToScene(text->boundingRect())));
        }
        EXPECT_EQ(texts.join(u'|'), QLatin1String(told));
        auto* spoken = QAccessible::queryAccessibleInterface(symbol);
        const QStringList keys =
            spoken->actionInterface()->keyBindingsForAction(QAccessibleActionInterface::pressAction());
        EXPECT_EQ((QStringList{spoken->text(QAccessible::Name)} + keys).join(u'|'), QLatin1String(told));
        QTest::mousePress(window.get(), Qt::LeftButton, {}, middle(*symbol));
        EXPECT_EQ(popup(), nullptr) << "pressed";
        QTest::mouseMove(window.get(), {200, 590});
        QTest::mouseRelease(window.get(), Qt::LeftButton, {}, {200, 590});
    }
}

TEST_F(MenuTest, aPickersMenuGoesWithFocusAndTheFormStays)
{
    openForm();
    QQuickItem* uri = window->activeFocusItem();
    QQuickItem* picker = button("Algorithm");
    for (QQuickItem* next : {picker, uri}) {
        tap(*picker);
        awaited("SHA256");
        if (next == picker) {
            SceneTest::hold(Qt::Key_Escape);
            EXPECT_EQ(button("SHA256"), nullptr) << "at once";
        } else {
            uri->forceActiveFocus(Qt::TabFocusReason);
        }
        EXPECT_TRUE(QTest::qWaitFor([this] { return button("SHA256") == nullptr; }));
        EXPECT_EQ(window->activeFocusItem(), next);
        EXPECT_TRUE(contentView.showingAdd()) << "the menu alone is closed";
    }
}

} // namespace MirrowvaleAuthenticator
