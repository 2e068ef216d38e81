#pragma once

#include "tests/ui/ScreenFixture.h"
#include "ui/app/MakeMainWindow.h"
#include "ui/desktop/SystemAppearance.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QList>
#include <QMimeData>
#include <QPointingDevice>
#include <QQmlExpression>
#include <QQuickItem>
#include <QTest>

#include <memory>
#include <stdexcept>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// The whole window on the screens' state, drawn nowhere, and a finger and a keyboard on it.
class SceneTest : public ScreenTest {
protected:
    /// Sets back what outlives the window.
    void TearDown() override
    {
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        set("org.freedesktop.appearance", "color-scheme", 0U);
        set("org.freedesktop.appearance", "contrast", 0U);
        setTextScale(1);
    }

    void build()
    {
        window = makeMainWindow(engine, contentView);
        ASSERT_NE(window, nullptr);
    }

    /// The nearest items below that are shown and wanted.
    template <typename Condition>
    static QList<QQuickItem*> shown(const QQuickItem* item, const Condition& wanted)
    {
        QList<QQuickItem*> found;
        for (QQuickItem* child : item->childItems()) {
            if (child->isVisible() && child->opacity() > 0) {
                found += wanted(*child) ? QList{child} : shown(child, wanted);
            }
        }
        return found;
    }

    /// The same by a type of the toolkit or of ours.
    static QList<QQuickItem*> shown(const QQuickItem* item, const char* type)
    {
        return shown(item, [type](const QQuickItem& candidate) { return candidate.inherits(type); });
    }

    /// @param user  what has the singleton among its imports
    static QObject* singleton(const char* name, QObject* user)
    {
        return QQmlExpression(qmlContext(user), user, QLatin1String(name)).evaluate().value<QObject*>();
    }

    /// One of the desktop's settings.
    void set(const char* group, const char* key, const QVariant& value)
    {
        auto* appearance = singleton("SystemAppearance", singleton("Theme", window.get()));
        qobject_cast<SystemAppearance*>(appearance)->apply(QLatin1String(group), QLatin1String(key), value);
    }

    void setTextScale(double scale) { set("org.gnome.desktop.interface", "text-scaling-factor", scale); }

    /// The window with a row for each letter.
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

    /// @returns  the button that advances the first row's counter
    QQuickItem* makeFirstCounted()
    {
        store.tokens.modify([](std::vector<AuthToken>& tokens) { tokens[0].kind = AuthToken::Kind::hotp; });
        return awaited("Next");
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

    /// All drawn texts. What must be readable is whole and within what it belongs to.
    QStringList drawnTexts() const
    {
        window->grabWindow(); // lays everything out
        QStringList texts;
        for (const QQuickItem* item : shown(window->contentItem(), [](const QQuickItem& candidate) {
                 return candidate.property("contentWidth").isValid()
                     && !candidate.property("text").toString().isEmpty();
             })) {
            texts += item->property("text").toString();
            SCOPED_TRACE(texts.constLast().toStdString());
            EXPECT_FALSE(item->property("truncated").toBool());
            EXPECT_LE(item->property("contentWidth").toReal(), item->width() + 0.5);
            EXPECT_GE(item->x(), -0.5);
            EXPECT_LE(item->x() + item->width(), item->parentItem()->width() + 0.5);
        }
        return texts;
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

    void goElsewhereAndBack()
    {
        QWindow other;
        other.show();
        for (QWindow* next : {&other, static_cast<QWindow*>(window.get())}) {
            next->requestActivate();
            ASSERT_TRUE(QTest::qWaitForWindowActive(next));
        }
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

    ContentView contentView{store};
    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> window;
    std::unique_ptr<QPointingDevice> finger{QTest::createTouchDevice()};
    QQuickItem* view = nullptr; ///< the list
};

} // namespace MirrowvaleAuthenticator
