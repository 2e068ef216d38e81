#include "tests/ui/SceneFixture.h"
#include "ui/app/Language.h"

#include <QAccessible>
#include <QDir>
#include <QRegularExpression>
#include <QTest>
#include <QTranslator>

namespace MirrowvaleAuthenticator {
namespace {

constexpr int narrowest = 320;

/// A language in which every text is accented, longer, and in brackets.
class PseudoLanguage : public QTranslator {
public:
    static QString of(const QString& text)
    {
        const QString accented = QString(text).replace(u'a', u'å').replace(u'e', u'é').replace(u'o', u'ô');
        return u'[' + accented + QString(1 + 2 * text.size() / 5, u'~') + u']';
    }

    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* text, const char*, int) const override
    {
        return of(QString::fromUtf8(text));
    }
};

/// The window as narrow as any.
class LanguageTest : public SceneTest {
public:
    ~LanguageTest() override
    {
        qDeleteAll(qGuiApp->findChildren<QTranslator*>());
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    }

    void show()
    {
        window.reset();
        contentView.setShowingAdd(false);
        contentView.discardAddTokenView();
        build();
        window->resize(narrowest, 1600);
        ASSERT_TRUE(QTest::qWaitFor([this] { return window->contentItem()->width() == narrowest; }));
    }

    void showEmptyState()
    {
        list("");
        show();
    }

    /// Two tokens are named as the interface is, the third has no names. All rows are open.
    void showList()
    {
        auto tokens = tokensNamed("abc");
        tokens[0].issuer = "Delete";
        tokens[0].account = "Copy code";
        tokens[1].kind = AuthToken::Kind::hotp;
        tokens[1].issuer = tokens[1].account = "Next";
        tokens[2].issuer = tokens[2].account = "";
        store.tokens = tokens;
        show();
        window->grabWindow(); // makes the rows
        for (QQuickItem* row : shown(window->contentItem(), "MirrowvaleAuthenticator::TokenRowItem")) {
            row->setProperty("open", true);
            row->setProperty("offset", row->property("deleteWidth"));
        }
    }

    void showSheetWithError()
    {
        show();
        contentView.setShowingAdd(true);
        contentView.addTokenView()->importFromURI();
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

    QStringList spokenTexts() const
    {
        QStringList texts{window->title()};
        shown(window->contentItem(), [&texts](QQuickItem& item) {
            if (QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&item)) {
                texts << spoken->text(QAccessible::Name) << spoken->text(QAccessible::Description);
            }
            return false; // goes on to what is in it
        });
        return texts;
    }

    /// No letter may be left once what was translated and what stands for itself are taken out of the texts.
    static void expectTranslated(QStringList texts, const QStringList& verbatim)
    {
        static const QRegularExpression innermost(QStringLiteral("\\[[^\\[\\]]*\\]"));
        static const QRegularExpression letter(QStringLiteral("\\p{L}"));
        while (!texts.filter(innermost).isEmpty()) {
            texts.replaceInStrings(innermost, QString());
        }
        for (const QString& piece : verbatim) {
            EXPECT_FALSE(texts.filter(piece).isEmpty()) << piece.toStdString();
            texts.replaceInStrings(piece, QString());
        }
        EXPECT_EQ(texts.filter(letter).join(u'\n').toStdString(), "");
    }
};

TEST_F(LanguageTest, everyTextOfTheInterfaceIsTranslatedAndNoOther)
{
    PseudoLanguage language;
    QCoreApplication::installTranslator(&language);
    showEmptyState();
    expectTranslated(drawnTexts() + spokenTexts(), {});
    showList();
    const QStringList names = QStringLiteral("Delete|Copy code|Next|Token|Account").split(u'|');
    expectTranslated(drawnTexts(), names);
    expectTranslated(spokenTexts(), names);
    for (const QString& name : names.first(3)) {
        EXPECT_TRUE(spokenTexts().contains(PseudoLanguage::of(name))) << name.toStdString();
    }
    showSheetWithError();
    const QString message = QStringLiteral("Enter a valid otpauth:// URI.");
    const QStringList onSheet = names + QStringList{message, QStringLiteral("SHA1")};
    expectTranslated(drawnTexts(), onSheet);
    expectTranslated(spokenTexts(), onSheet);
}

TEST_F(LanguageTest, everyTranslationFitsTheNarrowestScreenAndRunsInItsDirectionButForCodes)
{
    useTranslation(*qGuiApp, {});
    EXPECT_EQ(qGuiApp->findChild<QTranslator*>(), nullptr);
    const QStringList translations = QDir(QStringLiteral(":/i18n")).entryList();
    EXPECT_EQ(translations.join(u' '), QStringLiteral("ar de es fr he ja pt_BR zh_CN"));
    for (const QString& translation : translations) {
        SCOPED_TRACE(translation.toStdString());
        useTranslation(*qGuiApp, translation);
        const bool isMirrored = QStringLiteral("ar he").contains(translation);
        EXPECT_EQ(QGuiApplication::layoutDirection(), isMirrored ? Qt::RightToLeft : Qt::LeftToRight);
        for (const auto state :
             {&LanguageTest::showEmptyState, &LanguageTest::showSheetWithError, &LanguageTest::showList}) {
            (this->*state)();
            EXPECT_GE(drawnTexts().size(), 3);
        }
        const auto codes = shown(window->contentItem(), "QQuickTextInput");
        EXPECT_EQ(codes.size(), 3);
        for (QQuickItem* code : codes) {
            QRectF first;
            QRectF last;
            QMetaObject::invokeMethod(code, "positionToRectangle", Q_RETURN_ARG(QRectF, first),
                                      Q_ARG(int, 1));
            QMetaObject::invokeMethod(code, "positionToRectangle", Q_RETURN_ARG(QRectF, last), Q_ARG(int, 6));
            EXPECT_LT(first.x(), last.x());
        }
        delete qGuiApp->findChild<QTranslator*>();
    }
}

TEST(BestTranslationTest, servesTheFirstLanguageThatThereIs)
{
    // clang-format off
    const std::pair<const char*, const char*> table[] = {
        {"de-AT de-Latn-AT de", "de"}, {"tlh C fr-CA en", "fr"}, {"pt-PT", "pt_BR"}, {"iw-IL", "he"},
        {"zh-SG", "zh_CN"}, {"zh-TW ja", "ja"}, {"en-GB de", ""}, {"fa-IR fa-Arab-IR fa", ""}, {"C", ""},
        {"zh-Hant-TW zh-TW", ""}, // another script
    };
    // clang-format on
    for (const auto& [wanted, best] : table) {
        EXPECT_EQ(bestTranslation(QString::fromLatin1(wanted).split(u' ')).toStdString(), best) << wanted;
    }
}

} // namespace
} // namespace MirrowvaleAuthenticator
