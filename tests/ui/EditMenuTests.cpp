#include "tests/ui/SceneFixture.h"

#include <QAccessible>
#include <QWheelEvent>

#include <functional>
#include <tuple>
#include <utility>

namespace MirrowvaleAuthenticator {

using EditMenuTest = SceneTest;

TEST_F(EditMenuTest, theEditMenuStaysWhereItsFieldIsBroughtIntoSight)
{
    openForm();
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
    const QQuickItem& field = *window->activeFocusItem();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isInSight(field, field.boundingRect(), *formAround(&field)); }));
    EXPECT_NE(button("Paste"), nullptr);
}

TEST_F(EditMenuTest, theEditMenuHasAllItsEntriesAndCutsAndPastesByFingerAndByMouse)
{
    openForm();
    QQuickItem& uri = *window->activeFocusItem();
    EXPECT_TRUE(uri.property("inputMethodHints").toInt() & Qt::ImhSensitiveData);
    for (const char* type : {"QQuickTextEdit", "QQuickTextInput"}) {
        ASSERT_TRUE(window->activeFocusItem()->inherits(type));
        const QQuickItem& field = *window->activeFocusItem();
        QGuiApplication::clipboard()->clear();
        QTest::keyClick(window.get(), Qt::Key_Menu);
        EXPECT_TRUE(QTest::qWaitFor([this] { return popup() != nullptr; }));
        EXPECT_EQ(entries().join(u'|'), QStringLiteral("(Cut)|(Copy)|(Paste)|(Select All)"));
        QTest::keyClick(window.get(), Qt::Key_Escape);
        EXPECT_EQ(popup(), nullptr);
        EXPECT_TRUE(contentView.showingAdd());
        for (const auto key : {Qt::Key_A, Qt::Key_B, Qt::Key_C}) {
            QTest::keyClick(window.get(), key);
        }
        for (const auto& [left, byFinger, entriesThen] :
             {std::tuple{"ab", false, "Cut|Copy|(Paste)|Select All"},
              {"a", true, "Cut|Copy|Paste|Select All"}}) {
            QTest::keyClick(window.get(), Qt::Key_Left, Qt::ShiftModifier);
            QQuickItem* cut = offered("Cut", field, byFinger);
            EXPECT_EQ(entries().join(u'|'), QLatin1String(entriesThen));
            tap(*cut);
            EXPECT_EQ(field.property("text"), QLatin1String(left)) << type;
            EXPECT_TRUE(clipboardHasHint());
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
        EXPECT_TRUE(clipboardHasHint());
        EXPECT_EQ(uri.property("text"), QLatin1String(left));
    }
}

TEST_F(EditMenuTest, theEditMenuGoesWhenItsPlaceDoes)
{
    open("a");
    window->resize(390, 320);
    openSheet();
    QQuickItem* field = window->activeFocusItem();
    const QQuickItem* form = formAround(field);
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"typing", [this] { QTest::keyClick(window.get(), Qt::Key_A); }},
        {"a moved caret", [this] { QTest::keyClick(window.get(), Qt::Key_Left); }},
        {"scrolling",
         [this, field] {
             const QPoint place = middle(*field);
             QWheelEvent wheel(place, place, {}, {0, -60}, {}, {}, Qt::NoScrollPhase, false);
             QCoreApplication::sendEvent(window.get(), &wheel);
         }},
        {"another window", [this] { goElsewhereAndBack(); }},
    };
    QGuiApplication::clipboard()->setText(QStringLiteral("otpauth://totp/x"));
    contentView.addTokenView()->setImportURI(QStringLiteral("ab"));
    for (const auto& [name, change] : changes) {
        ASSERT_TRUE(QTest::qWaitFor([form] { return !form->property("moving").toBool(); }));
        QTest::keyClick(window.get(), Qt::Key_End);
        QQuickItem* paste = offered("Paste", *field, false);
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(paste)->state().focusable)
            << "its field would lose it";
        change();
        EXPECT_TRUE(QTest::qWaitFor([this] { return popup() == nullptr; })) << name;
    }
}

} // namespace MirrowvaleAuthenticator
