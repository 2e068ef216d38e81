#include "tests/ui/SceneFixture.h"
#include "ui/app/WindowVisibility.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QPointingDevice>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <functional>
#include <stdexcept>
#include <tuple>
#include <vector>

namespace MirrowvaleAuthenticator {
namespace {

/// A finger and a keyboard on the window with a row for each letter.
class HandTest : public SceneTest {
protected:
    void open(std::string_view letters)
    {
        list(letters);
        build();
        window->resize(390, 600);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        view = shown(window->contentItem(), "QQuickListView").value(0);
        ASSERT_NE(view, nullptr);
        ASSERT_TRUE(QTest::qWaitFor([this] { return row(0) != nullptr; }));
    }

    QQuickItem* row(int index) const
    {
        return shown(view, [index](const QQuickItem& item) { return item.property("index") == index; })
            .value(0);
    }

    /// A button in sight, by its title.
    QQuickItem* button(const char* title, const QQuickItem* around = nullptr) const
    {
        const auto isIt = [title](const QQuickItem& item) {
            return item.inherits("MirrowvaleAuthenticator::ButtonItem")
                && item.property("text") == QLatin1String(title);
        };
        return shown(around != nullptr ? around : window->contentItem(), isIt).value(0);
    }

    /// The same once it can be pressed as a whole.
    QQuickItem* awaited(const char* title) const
    {
        QQuickItem* found = nullptr;
        const auto isWhole = [&] {
            found = button(title);
            return found && found->width() >= 44
                && found->mapToScene({found->width(), 0}).x() <= window->width();
        };
        return QTest::qWaitFor(isWhole) ? found : throw std::runtime_error(title);
    }

    static QPoint middle(const QQuickItem& item)
    {
        return item.mapToScene({item.width() / 2, item.height() / 2}).toPoint();
    }

    void press(QPoint place) { QTest::touchEvent(window.get(), finger.get()).press(0, place); }
    void move(QPoint place) { QTest::touchEvent(window.get(), finger.get()).move(0, place); }
    void release(QPoint place) { QTest::touchEvent(window.get(), finger.get()).release(0, place); }

    void tap(const QQuickItem& item)
    {
        press(middle(item));
        release(middle(item));
    }

    /// Presses a finger and moves it evenly.
    void pull(QPoint from, QPoint to)
    {
        press(from);
        for (int step = 1; step <= 10; ++step) {
            QTest::qWait(5);
            move(from + (to - from) * step / 10);
        }
    }

    /// The same; it rests before it leaves.
    void drag(QPoint from, QPoint to)
    {
        pull(from, to);
        QTest::qWait(120);
        release(to);
    }

    void swipe(const QQuickItem& item)
    {
        const QPoint from = middle(item);
        drag(from, from - QPoint(150, 0));
    }

    QQuickItem* sheet() const
    {
        return shown(window->contentItem(),
                     [](const QQuickItem& item) { return item.property("lowered").isValid(); })
            .value(0);
    }

    bool sheetIsUp() const { return sheet() != nullptr && sheet()->property("lowered") == 0.0; }

    void openSheet()
    {
        contentView.setShowingAdd(true);
        ASSERT_TRUE(QTest::qWaitFor([this] { return sheetIsUp(); }));
        ASSERT_TRUE(window->activeFocusItem()->inherits("QQuickTextEdit"));
    }

    static bool clipboardIsMarked()
    {
        return QGuiApplication::clipboard()->mimeData()->hasFormat(
            QStringLiteral("x-kde-passwordManagerHint"));
    }

    void goElsewhere()
    {
        QWindow other;
        other.show();
        other.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    }

    /// Brings up a field's edit menu, by a finger that rests on it or by a mouse's other button.
    /// @returns  what the menu offers under a title
    QQuickItem* offered(const char* title, const QQuickItem& field, bool byFinger)
    {
        if (!byFinger) {
            QTest::mouseClick(window.get(), Qt::RightButton, {}, middle(field));
            return awaited(title);
        }
        press(middle(field));
        QQuickItem* offer = awaited(title);
        release(middle(field));
        EXPECT_EQ(button(title), offer) << "the finger that held it is gone";
        return offer;
    }

    /// What scrolls a field.
    static const QQuickItem* formAround(const QQuickItem* item)
    {
        return item->inherits("QQuickFlickable") ? item : formAround(item->parentItem());
    }

    static bool ringIsAt(const QQuickItem* item)
    {
        const auto isRing = [](const QQuickItem& part) {
            return QLatin1String(part.metaObject()->className()).startsWith(QLatin1String("FocusRing"));
        };
        return item != nullptr && item->property("visualFocus").toBool() && !shown(item, isRing).isEmpty();
    }

    static bool isInSight(const QQuickItem& item, const QRectF& part, const QQuickItem& around)
    {
        const QRectF place = item.mapRectToItem(&around, part);
        return place.top() >= 0 && place.bottom() <= around.height();
    }

    double scrolled() const { return view->property("contentY").toDouble(); }

    std::unique_ptr<QPointingDevice> finger{QTest::createTouchDevice()};
    QQuickItem* view = nullptr;
};

TEST_F(HandTest, theListStaysWhereItWasScrolledTo)
{
    open("abcdefghijklmnopqrstuvwxyz");
    drag({200, 500}, {200, 150});
    ASSERT_TRUE(QTest::qWaitFor([this] { return !view->property("moving").toBool(); }));
    const double place = scrolled();
    ASSERT_GT(place, 100);

    goElsewhere();
    window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
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

TEST_F(HandTest, aDeletedRowPassesFocusOnAndShowsItWhereKeysWereUsed)
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
            QTest::qWait(50);
            const QQuickItem* next = left.empty() ? button("Add token") : row(left == "ac" ? 1 : 0);
            EXPECT_EQ(ringIsAt(next), byKeys) << left;
            EXPECT_EQ(ringIsAt(window->activeFocusItem()), byKeys) << left;
            EXPECT_TRUE(next->hasActiveFocus() || !left.empty());
        }
    }
}

TEST_F(HandTest, everyQuickTapCountsAndAHeldReturnOnce)
{
    open("a");
    store.tokens.modify([](std::vector<AuthToken>& tokens) { tokens[0].kind = AuthToken::Kind::hotp; });
    QQuickItem* next = awaited("Next");
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
    for (const bool repeats : {false, true, true}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), repeats);
        QCoreApplication::sendEvent(window.get(), &press);
    }
    EXPECT_EQ(store.tokens->front().counter, 6U);
}

TEST_F(HandTest, focusGoesToAnyRowAndStaysThereWhateverHappensToOthers)
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
}

TEST_F(HandTest, focusStaysWhereItCanBeSeen)
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

    auto* code = row(0)->property("code").value<QQuickItem*>();
    press(middle(*code));
    ASSERT_TRUE(QTest::qWaitFor([&] { return code->hasActiveFocus(); }));
    release(middle(*code));
    tap(*awaited("Copy"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), row(0)->property("displayCode"));
    EXPECT_TRUE(clipboardIsMarked());
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_EQ(window->activeFocusItem(), row(0)) << "after a selection";
}

TEST_F(HandTest, keysLeadToAllOfEveryRowHoweverHighItIsAndAllAreReadInTheirOrder)
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

TEST_F(HandTest, aRowServesItsNextTokenAsNew)
{
    open("abcdefghijklmnopqrstuvwxyz");
    QQuickItem* swiped = row(1);
    swiped->setProperty("open", true);
    swiped->setProperty("revealed", 80);
    ASSERT_NE(button("Delete"), nullptr);
    for (const double far : {800.0, 0.0}) {
        view->setProperty("contentY", view->property("originY").toDouble() + far);
        ASSERT_TRUE(QTest::qWaitFor([&] { return row(far > 0 ? 10 : 1) != nullptr; }));
        EXPECT_EQ(button("Delete"), nullptr) << far;
        std::vector<int> read; // by a screen reader: as they are stacked
        for (const QQuickItem* each : shown(view, "MirrowvaleAuthenticator::TokenRowItem")) {
            read.push_back(each->property("index").toInt());
        }
        EXPECT_TRUE(std::ranges::is_sorted(read)) << far;
    }
}

TEST_F(HandTest, theClockStandsWhileNobodyCanSeeTheWindow)
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
        QTest::qWait(50);
        const double left = now();
        QTest::qWait(1200);
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
        EXPECT_GT(drawn, left + 1) << "the first frame is of that instant";
        QObject::disconnect(frames);
    }
    const double back = now();
    EXPECT_TRUE(QTest::qWaitFor([&] { return now() > back; })) << "stays";
    EXPECT_GT(now() - back, 0.5) << "more than once a second";
}

TEST_F(HandTest, theEditMenuStaysWhereItsFieldIsBroughtIntoSight)
{
    open("a");
    openSheet();
    QGuiApplication::clipboard()->setText(QStringLiteral("x"));
    QQuickItem* uri = window->activeFocusItem();
    window->resize(390, 330);
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->contentItem()->height() == 330; }));
    QTest::keyClick(window.get(), Qt::Key_Tab, Qt::NoModifier);
    QQuickItem* issuer = window->activeFocusItem();
    ASSERT_TRUE(issuer->inherits("QQuickTextField"));
    uri->forceActiveFocus(Qt::OtherFocusReason);
    QTest::mouseClick(window.get(), Qt::RightButton, {}, {100, 325});
    EXPECT_TRUE(QTest::qWaitFor([&] { return button("Paste") != nullptr; }));
    EXPECT_NE(window->activeFocusItem(), uri);
    QTest::qWait(100);
    EXPECT_NE(button("Paste"), nullptr);
}

TEST_F(HandTest, theEditMenuCutsAndPastesByFingerAndByMouse)
{
    open("a");
    openSheet();
    QQuickItem& uri = *window->activeFocusItem();
    EXPECT_TRUE(uri.property("inputMethodHints").toInt() & Qt::ImhSensitiveData);
    QGuiApplication::clipboard()->setText(QStringLiteral("x"));
    for (const char* type : {"QQuickTextEdit", "QQuickTextInput"}) {
        ASSERT_TRUE(window->activeFocusItem()->inherits(type));
        const QQuickItem& field = *window->activeFocusItem();
        for (const auto key : {Qt::Key_A, Qt::Key_B, Qt::Key_C}) {
            QTest::keyClick(window.get(), key);
        }
        for (const auto& [left, byFinger] : {std::pair{"ab", false}, {"a", true}}) {
            QTest::keyClick(window.get(), Qt::Key_Left, Qt::ShiftModifier);
            tap(*offered("Cut", field, byFinger));
            EXPECT_EQ(field.property("text"), QLatin1String(left)) << type;
            EXPECT_TRUE(clipboardIsMarked());
        }
        QTest::keyClick(window.get(), Qt::Key_Home);
        tap(*offered("Paste", field, true));
        EXPECT_EQ(field.property("text"), QStringLiteral("ba")) << type;
        EXPECT_EQ(button("Paste"), nullptr);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("b"));
        QTest::keyClick(window.get(), Qt::Key_Tab);
        QTest::keyClick(window.get(), Qt::Key_Tab);
    }
    for (const auto& [key, left] : {std::pair{Qt::Key_C, "ba"}, {Qt::Key_X, ""}}) {
        uri.forceActiveFocus();
        QGuiApplication::clipboard()->clear();
        QTest::keyClick(window.get(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(window.get(), key, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("ba"));
        EXPECT_TRUE(clipboardIsMarked());
        EXPECT_EQ(uri.property("text"), QLatin1String(left));
    }
}

TEST_F(HandTest, theEditMenuGoesWhenItsPlaceOrItsOfferDoes)
{
    open("a");
    window->resize(390, 320);
    openSheet();
    QQuickItem* field = window->activeFocusItem();
    const QQuickItem* form = formAround(field);
    auto* clipboard = QGuiApplication::clipboard();
    const std::tuple<const char*, const char*, std::function<void()>> changes[] = {
        {"typing", "", [this] { QTest::keyClick(window.get(), Qt::Key_A); }},
        {"a moved caret", "ab", [this] { QTest::keyClick(window.get(), Qt::Key_Left); }},
        {"scrolling", "",
         [this, field] {
             const QPoint place = middle(*field);
             QWheelEvent wheel(place, place, {}, {0, -60}, {}, {}, Qt::NoScrollPhase, false);
             QCoreApplication::sendEvent(window.get(), &wheel);
         }},
        {"nothing to paste", "", [clipboard] { clipboard->clear(); }},
        {"another window", "", [this] { goElsewhere(); }},
    };
    for (const auto& [name, text, change] : changes) {
        clipboard->setText(QStringLiteral("otpauth://totp/x"));
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        ASSERT_TRUE(QTest::qWaitFor([form] { return !form->property("moving").toBool(); }));
        contentView.addTokenView()->setImportURI(QLatin1String(text));
        QTest::keyClick(window.get(), Qt::Key_End);
        QQuickItem* paste = offered("Paste", *field, false);
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(paste)->state().focusable)
            << "its field would lose it";
        change();
        EXPECT_TRUE(QTest::qWaitFor([this] {
            return shown(window->contentItem(), "QQuickPopupItem").isEmpty(); // without an empty frame
        })) << name;
    }
}

TEST_F(HandTest, aPressIsOneStepOrRepeatsWhileItIsHeld)
{
    open("a");
    openSheet();
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

TEST_F(HandTest, scrollingClosesAnOpenRowAndKeepsTheAcknowledgement)
{
    open("abcdefghijklmnopqrstuvwxyz");
    swipe(*row(2));
    awaited("Delete");
    drag({200, 500}, {200, 350});
    EXPECT_TRUE(QTest::qWaitFor([this] { return button("Delete") == nullptr; }));
    drag({200, 350}, {200, 500});
    contentView.copyCode(0);
    for (const double far : {800.0, 0.0}) {
        view->setProperty("contentY", view->property("originY").toDouble() + far);
    }
    EXPECT_NE(button("Copied", row(0)), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([this] { return button("Copy code", row(0)) != nullptr; }));
}

TEST_F(HandTest, anOpenRowClosesByATapWhateverHappenedMeanwhile)
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
             QTest::qWait(120);
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
}

TEST_F(HandTest, aSheetThatIsDismissedWhileItIsDrawnDownTakesTheFormAlong)
{
    open("a");
    openSheet();
    const QPoint bar(195, 66);
    pull(bar, bar + QPoint(0, 300));
    QTest::keyClick(window.get(), Qt::Key_Escape);
    move(bar + QPoint(0, 310));
    release(bar + QPoint(0, 310));
    EXPECT_TRUE(QTest::qWaitFor([this] { return contentView.addTokenView() == nullptr; }));
}

TEST_F(HandTest, theFormPullsTheSheetAlongFromItsTopAlone)
{
    open("a");
    window->resize(390, 330);
    openSheet();
    const QQuickItem* form = formAround(window->activeFocusItem());
    drag({10, 300}, {10, 200});
    ASSERT_GT(form->property("contentY").toDouble(), 40);
    drag({10, 80}, {10, 320});
    EXPECT_TRUE(QTest::qWaitFor([&] { return form->property("contentY") == 0.0; }));
    QTest::qWait(50);
    EXPECT_TRUE(contentView.showingAdd());
    drag({10, 80}, {10, 320});
    EXPECT_TRUE(QTest::qWaitFor([this] { return contentView.addTokenView() == nullptr; }));
}

TEST_F(HandTest, aKeyThatIsHeldActsWhereItWasPressed)
{
    open("a");
    openSheet();
    QQuickItem* uri = window->activeFocusItem();
    const auto repeat = [this](Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(window.get(), &event);
    };
    const auto hold = [&](Qt::Key key) {
        QTest::keyPress(window.get(), key);
        for (int repeats = 0; repeats < 8; ++repeats) {
            repeat(key);
        }
    };
    hold(Qt::Key_Return);
    EXPECT_EQ(window->activeFocusItem()->property("placeholder"), QStringLiteral("Issuer"))
        << "moves on once";
    hold(Qt::Key_Return);
    EXPECT_EQ(window->activeFocusItem()->property("placeholder"), QStringLiteral("Account"));
    button("Increment")->forceActiveFocus(Qt::TabFocusReason);
    hold(Qt::Key_Return);
    EXPECT_EQ(contentView.addTokenView()->digits(), 8) << "the other button does not go on";
    EXPECT_TRUE(ringIsAt(button("Decrement")));
    QTest::keyClick(window.get(), Qt::Key_Space);
    button("Increment")->forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(window.get(), Qt::Key_Space);
    EXPECT_EQ(contentView.addTokenView()->digits(), 8);
    EXPECT_TRUE(ringIsAt(button("Decrement"))) << "at a stepper's limit";
    QTest::keyClick(window.get(), Qt::Key_Space);
    button("Increment")->forceActiveFocus(Qt::TabFocusReason);
    repeat(Qt::Key_Return);
    button("Decrement")->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(contentView.addTokenView()->digits(), 7) << "pressed elsewhere";
    EXPECT_FALSE(button("Increment")->property("down").toBool());
    goElsewhere();
    window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    EXPECT_TRUE(ringIsAt(button("Decrement"))) << "back from another window";

    QQuickItem* picker = button("Algorithm");
    for (QQuickItem* next : {picker, uri}) { // a picker's menu goes with focus
        tap(*picker);
        awaited("SHA256");
        if (next == picker) {
            hold(Qt::Key_Escape);
            EXPECT_EQ(button("SHA256"), nullptr) << "at once";
        } else {
            uri->forceActiveFocus(Qt::TabFocusReason);
        }
        EXPECT_TRUE(QTest::qWaitFor([this] { return button("SHA256") == nullptr; }));
        EXPECT_EQ(window->activeFocusItem(), next);
        EXPECT_TRUE(contentView.showingAdd()) << "the menu alone is closed";
    }
}

TEST_F(HandTest, theSheetStaysUpInAWindowOfAnySizeAndShowsWhatHasFocus)
{
    open("a");
    openSheet();
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

} // namespace
} // namespace MirrowvaleAuthenticator
