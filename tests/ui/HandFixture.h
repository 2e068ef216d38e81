#pragma once

#include "tests/ui/SceneFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QPointingDevice>
#include <QTest>

#include <memory>
#include <stdexcept>
#include <string_view>

namespace MirrowvaleAuthenticator {

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

    /// What the menu that is up offers, from top to bottom; what cannot be chosen now in parentheses.
    QStringList entries() const
    {
        QStringList titles;
        for (const QQuickItem* item : shown(window->contentItem(), "MirrowvaleAuthenticator::ButtonItem")) {
            const QString title = item->property("text").toString();
            if (item->property("inMenu").toBool()) {
                titles += item->isEnabled() ? title : u'(' + title + u')';
            }
        }
        return titles;
    }

    /// A button by its title, once it can be pressed as a whole.
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
        rest();
        release(to);
    }

    /// Keeps the finger still until it has no speed, which it would leave with.
    static void rest() { QTest::qWait(120); }

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

    void openForm()
    {
        open("a");
        openSheet();
    }

    static bool clipboardHasHint()
    {
        return QGuiApplication::clipboard()->mimeData()->hasFormat(
            QStringLiteral("x-kde-passwordManagerHint"));
    }

    void repeat(Qt::Key key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(window.get(), &event);
    }

    void hold(Qt::Key key)
    {
        QTest::keyPress(window.get(), key);
        for (int repeats = 0; repeats < 8; ++repeats) {
            repeat(key);
        }
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

    /// The surface of the menu or tooltip that is up.
    QQuickItem* popup() const { return shown(window->contentItem(), "QQuickPopupItem").value(0); }

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

} // namespace MirrowvaleAuthenticator
