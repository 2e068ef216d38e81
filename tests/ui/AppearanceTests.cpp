#include "tests/ui/SceneFixture.h"

#include <QColor>
#include <QImage>

#include <cmath>
#include <set>
#include <tuple>

namespace MirrowvaleAuthenticator {
namespace {

class AppearanceTest : public SceneTest {
protected:
    void SetUp() override
    {
        build();
        theme = singleton("Theme", window.get());
        ASSERT_NE(theme, nullptr);
    }

    QColor color(const char* role) const
    {
        const QVariant value = theme->property(role);
        EXPECT_TRUE(value.isValid()) << role;
        return value.value<QColor>();
    }

    /// The average of what is drawn where an item stands.
    QColor average(const QQuickItem& item) const
    {
        const QImage all = window->grabWindow(); // lays everything out first
        const QImage drawn = all.copy(item.mapRectToScene(item.boundingRect()).toAlignedRect());
        return drawn.scaled(1, 1, {}, Qt::SmoothTransformation).pixelColor(0, 0);
    }

    QList<QQuickItem*> rows() const
    {
        return shown(window->contentItem(), "MirrowvaleAuthenticator::TokenRowItem");
    }

    QObject* theme = nullptr;
};

/// The relative luminance of WCAG 2, section 1.4.3.
double luminance(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

TEST_F(AppearanceTest, everyTextStandsOutFromWhatLiesBehindIt)
{
    // A text, what lies behind it, the least contrast, and the least where more is wanted.
    const std::tuple<const char*, std::vector<const char*>, double, double> rows[] = {
        {"primary", {"background", "groupedBackground", "card", "menu"}, 4.5, 7},
        {"primary", {"highlight", "fillOnCard", "selection"}, 4.5, 7},
        {"secondary", {"background", "groupedBackground", "card"}, 4.5, 7},
        {"placeholder", {"card"}, 4.5, 7},
        {"tint", {"background", "groupedBackground", "card", "fill", "fillPressed"}, 4.5, 7},
        {"red", {"background", "card"}, 4.5, 7},
        {"destructiveLabel", {"destructive"}, 4.5, 7},
        {"destructive", {"background"}, 3, 3},
        {"separator", {"background", "groupedBackground", "card", "menu", "fillOnCard"}, 1.04, 7},
        {"disabled", {"groupedBackground", "card", "fillOnCard"}, 1.5, 4.5},
    };
    for (const auto& [scheme, more] : {std::pair{2U, 0U}, {1U, 0U}, {2U, 1U}, {1U, 1U}}) {
        set("org.freedesktop.appearance", "color-scheme", scheme);
        set("org.freedesktop.appearance", "contrast", more);
        for (const auto& [text, surfaces, least, leastWhereMoreIsWanted] : rows) {
            for (const char* surface : surfaces) {
                EXPECT_GE(contrast(color(text), color(surface)), more == 1 ? leastWhereMoreIsWanted : least)
                    << text << " on " << surface << (scheme == 1 ? ", dark" : ", light");
            }
        }
    }
}

TEST_F(AppearanceTest, aGrowingTextLeavesTheListAtItsTopAndAnOpenRowOpen)
{
    list("ab");
    QQuickItem* row = nullptr;
    ASSERT_TRUE(QTest::qWaitFor([&] { return rows().size() == 2 && (row = rows().constFirst()); }));
    view = shown(window->contentItem(), "QQuickListView").constFirst();
    ASSERT_TRUE(QMetaObject::invokeMethod(row, "openByKey"));
    const auto isOpen = [row] {
        return row->property("offset") == row->property("deleteWidth") && row->property("offset") != 0.0;
    };
    ASSERT_TRUE(QTest::qWaitFor(isOpen));
    setTextScale(2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return view->property("contentY") == view->property("originY"); }));
    EXPECT_LT(view->property("originY").toDouble(), -80);
    EXPECT_TRUE(QTest::qWaitFor(isOpen));
}

double baseline(const QQuickItem& text)
{
    return text.mapToScene({0, text.baselineOffset()}).y();
}

TEST_F(AppearanceTest, namesAreDrawnWholeAndAsTheyAreAndEverythingToTouchIsLargeEnough)
{
    std::vector<AuthToken> tokens;
    for (const char* name :
         {"firstname.lastname.department@a-very-long-subdomain.example-",
          "A company of many words that has a name which is long and ends in a number: 1",
          "חשבון של חברה עם שם ארוך מאוד ועוד כמה מילים", "<b>two</b>\n&lt;lines&gt; <u>"}) {
        tokens.push_back(tokenNamed(name));
        tokens.back().digits = 8;
        tokens.push_back(tokenNamed("Bank", name));
        tokens.back().kind = AuthToken::Kind::hotp;
    }
    store.tokens = tokens;
    contentView.setShowingAdd(true);
    QCoreApplication::processEvents(); // a first frame, with which the window finds its own size
    window->resize(320, 3200);
    for (const auto& [asked, scale, direction] : {std::tuple{0.5, 0.8, Qt::LeftToRight},
                                                  {1.0, 1.0, Qt::LeftToRight},
                                                  {1.35, 1.35, Qt::LeftToRight},
                                                  {3.0, 2.0, Qt::LeftToRight},
                                                  {3.0, 2.0, Qt::RightToLeft}}) {
        SCOPED_TRACE(testing::Message() << scale << " " << direction);
        setTextScale(asked);
        EXPECT_EQ(theme->property("textScale"), scale);
        QGuiApplication::setLayoutDirection(direction);
        QCoreApplication::processEvents();
        drawnTexts();
        const auto buttons = shown(window->contentItem(), "MirrowvaleAuthenticator::ButtonItem");
        EXPECT_EQ(buttons.size(), 21);
        for (const QQuickItem* button : buttons) {
            EXPECT_GE(std::min(button->width(), button->height()), 44) << button->metaObject()->className();
        }
        ASSERT_EQ(rows().size(), 8);
        for (const QQuickItem* row : rows()) {
            const auto texts = shown(row, "QQuickText");
            ASSERT_EQ(texts.size(), 3);
            const QQuickItem& code = *shown(row, "QQuickTextInput").constFirst();
            for (const QQuickItem* name : texts.first(2)) {
                EXPECT_EQ(name->property("textFormat").toInt(), Qt::PlainText);
                const double end = name->mapToScene({0, name->property("contentHeight").toReal()}).y();
                EXPECT_LE(end, (name == texts[0] ? texts[1] : &code)->mapToScene({}).y() + 0.5);
            }
            EXPECT_NEAR(baseline(*texts[0]), baseline(*texts[2]), 0.5); // the countdown's, or "Next"
            const QPointF copy = middle(*shown(row, "MirrowvaleAuthenticator::ButtonItem").constLast());
            EXPECT_FALSE(code.mapRectToScene(code.boundingRect().adjusted(-8, 0, 8, 0)).contains(copy));
        }
    }
}

TEST_F(AppearanceTest, aSymbolIsTintedAndACountdownRedInItsLastFiveSecondsWhereItMovesNoName)
{
    list("a");
    std::set<double> roomsForNames;
    for (const uint scheme : {2U, 1U}) {
        set("org.freedesktop.appearance", "color-scheme", scheme);
        for (const auto& [second, isRed] : {std::pair{54, false}, {55, true}, {60, false}}) {
            QCoreApplication::processEvents();
            window->grabWindow();
            contentView.rows()->setNow(Date::fromSecondsSince1970(second));
            const auto texts = shown(rows().constFirst(), "QQuickText");
            ASSERT_EQ(texts.size(), 3);
            const QColor countdown = average(*texts[2]);
            EXPECT_EQ(countdown.red() > countdown.blue() + 5, isRed) << second;
            const QColor symbol = average(*shown(rows().constFirst(), "QQuickImage").constFirst());
            EXPECT_GT(symbol.blue(), symbol.red() + 5);
            roomsForNames.insert(texts[0]->width());
        }
    }
    EXPECT_EQ(roomsForNames.size(), 1U);
}

} // namespace
} // namespace MirrowvaleAuthenticator
