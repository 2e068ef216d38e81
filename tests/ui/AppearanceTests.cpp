#include "tests/ui/SceneFixture.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QTest>

#include <cmath>
#include <set>

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

    void TearDown() override
    {
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        set("org.freedesktop.appearance", "color-scheme", 0U);
        set("org.freedesktop.appearance", "contrast", 0U);
        setTextScale(1);
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

struct ContrastRow {
    const char* text;
    std::vector<const char*> surfaces;
    double least = 4.5;
    double leastWhereMoreIsWanted = 7;
};

TEST_F(AppearanceTest, everyTextStandsOutFromWhatLiesBehindIt)
{
    const ContrastRow rows[] = {
        {"primary",
         {"background", "groupedBackground", "card", "menu", "highlight", "fillOnCard", "selection"}},
        {"secondary", {"background", "groupedBackground", "card"}},
        {"placeholder", {"card"}},
        {"tint", {"background", "groupedBackground", "card", "fill", "fillPressed"}},
        {"red", {"background", "card"}},
        {"destructiveLabel", {"destructive"}},
        {"destructive", {"background"}, 3, 3},
        {"separator", {"background", "groupedBackground", "card", "menu", "fillOnCard"}, 1.04},
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
    const QQuickItem* view = shown(window->contentItem(), "QQuickListView").constFirst();
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

TEST_F(AppearanceTest, everythingToTouchIsLargeEnoughAndEveryCodeWhole)
{
    auto tokens = tokensNamed("ab");
    tokens[0].kind = AuthToken::Kind::hotp;
    tokens[1].digits = 8;
    store.tokens = tokens;
    contentView.setShowingAdd(true);
    window->resize(320, 1400);
    for (const auto& [asked, scale] : {std::pair{0.5, 0.8}, {1.0, 1.0}, {1.35, 1.35}, {3.0, 2.0}}) {
        setTextScale(asked);
        EXPECT_EQ(theme->property("textScale"), scale);
        ASSERT_TRUE(QTest::qWaitFor([&] {
            return shown(window->contentItem(), "MirrowvaleAuthenticator::ButtonItem").size() == 12;
        }));
        window->grabWindow(); // lays everything out
        for (const QQuickItem* button : shown(window->contentItem(), "MirrowvaleAuthenticator::ButtonItem")) {
            EXPECT_GE(std::min(button->width(), button->height()), 44)
                << button->metaObject()->className() << " at " << scale;
        }
        ASSERT_EQ(rows().size(), 2);
        for (QQuickItem* row : rows()) {
            QQuickItem* code = shown(row, "QQuickTextInput").constFirst();
            QQuickItem* copy = shown(row, "MirrowvaleAuthenticator::ButtonItem").constLast();
            const double wanted = QFontMetricsF(code->property("font").value<QFont>())
                                      .horizontalAdvance(code->property("text").toString());
            EXPECT_LE(wanted, code->width()) << "at " << scale;
            EXPECT_LE(code->mapRectToScene(code->boundingRect()).right(),
                      copy->mapRectToScene(copy->boundingRect()).center().x() - 8)
                << "at " << scale;
        }
    }
}

double baseline(const QQuickItem& text)
{
    return text.mapToScene({0, text.baselineOffset()}).y();
}

TEST_F(AppearanceTest, namesAreDrawnWholeAndAsTheyAre)
{
    std::vector<AuthToken> tokens;
    for (const char* name :
         {"firstname.lastname.department@a-very-long-subdomain.example-",
          "A company of many words that has a name which is long and ends in a number: 1",
          "חשבון של חברה עם שם ארוך מאוד ועוד כמה מילים", "<b>two</b>\n&lt;lines&gt; <u>"}) {
        tokens.push_back(tokenNamed(name));
        tokens.push_back(tokenNamed("Bank", name));
        tokens.back().kind = AuthToken::Kind::hotp;
    }
    store.tokens = tokens;
    QCoreApplication::processEvents(); // a first frame, with which the window finds its own size
    window->resize(320, 3200);
    for (const auto& [scale, direction] :
         {std::pair{1.0, Qt::LeftToRight}, {2.0, Qt::LeftToRight}, {2.0, Qt::RightToLeft}}) {
        setTextScale(scale);
        QGuiApplication::setLayoutDirection(direction);
        QCoreApplication::processEvents();
        window->grabWindow(); // lays everything out
        ASSERT_EQ(rows().size(), 8);
        for (const QQuickItem* row : rows()) {
            const auto texts = shown(row, "QQuickText");
            ASSERT_EQ(texts.size(), 3);
            const QQuickItem& code = *shown(row, "QQuickTextInput").constFirst();
            for (const QQuickItem* name : texts.first(2)) {
                EXPECT_EQ(name->property("textFormat").toInt(), Qt::PlainText);
                EXPECT_FALSE(name->property("truncated").toBool());
                EXPECT_LE(name->property("contentWidth").toReal(), name->width() + 0.5);
                const double end = name->mapToScene({0, name->property("contentHeight").toReal()}).y();
                EXPECT_LE(end, (name == texts[0] ? texts[1] : &code)->mapToScene({}).y() + 0.5);
            }
            EXPECT_NEAR(baseline(*texts[0]), baseline(*texts[2]), 0.5); // the countdown's, or "Next"
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
