#include "tests/ui/SceneFixture.h"
#include "ui/app/Language.h"

#include <QAccessible>
#include <QDir>
#include <QRegularExpression>
#include <QTranslator>

namespace MirrowvaleAuthenticator {

constexpr int narrowest = 320;

/// The window as narrow as any.
class LanguageTest : public SceneTest {
protected:
    ~LanguageTest() override { qDeleteAll(qGuiApp->findChildren<QTranslator*>()); }

    void show()
    {
        window.reset();
        contentView.setShowingAdd(false);
        contentView.discardAddTokenView();
        build();
        window->resize(narrowest, 1600);
        ASSERT_TRUE(QTest::qWaitFor([this] { return window->contentItem()->width() == narrowest; }));
    }

    /// Two tokens are named as the texts of a row are, the third has no names. All rows are open.
    void showList()
    {
        auto tokens = tokensNamed("abc");
        tokens[0].issuer = tokens[0].account = tokens[1].issuer = tokens[1].account = "Copied";
        tokens[1].kind = AuthToken::Kind::hotp;
        tokens[2].issuer = tokens[2].account = "";
        store.tokens = tokens;
        show();
        window->grabWindow(); // makes the rows
        for (QQuickItem* row : shown(window->contentItem(), "MirrowvaleAuthenticator::TokenRowItem")) {
            row->setProperty("open", true);
            row->setProperty("offset", row->property("deleteWidth"));
        }
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

    /// No Latin letter may be left in what is drawn, or spoken, once what stands for itself is taken out.
    static void expectTranslated(QStringList texts, const QStringList& verbatim)
    {
        static const QRegularExpression terms(QStringLiteral("Mirrowvale Auth(enticator)?|Base32"));
        static const QRegularExpression letter(QStringLiteral("[A-Za-z]"));
        for (const QString& piece : verbatim) {
            EXPECT_FALSE(texts.filter(piece).isEmpty()) << piece.toStdString();
            texts.replaceInStrings(piece, QString());
        }
        texts.replaceInStrings(terms, QString());
        EXPECT_EQ(texts.filter(letter).join(u'\n').toStdString(), "");
    }
};

TEST_F(LanguageTest, everyTextIsTranslatedAndNoNameAndFitsTheNarrowestScreenInItsDirectionButForCodes)
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
        const auto check = [&](const char* verbatim) {
            const QStringList drawn = drawnTexts();
            EXPECT_GE(drawn.size(), 3);
            if (translation == QStringLiteral("he")) { // which has none of English's letters
                expectTranslated(drawn, QString::fromUtf8(verbatim).split(u'|'));
                expectTranslated(spokenTexts(), QString::fromUtf8(verbatim).split(u'|'));
            }
        };
        list("");
        show();
        check("otpauth");
        contentView.setShowingAdd(true);
        contentView.addTokenView()->importFromURI();
        check("Enter a valid otpauth:// URI.|SHA1|otpauth");
        showList();
        EXPECT_EQ(drawnTexts().count(QStringLiteral("Copied")), 4);
        check("Copied|Token|Account");
        const auto codes = shown(window->contentItem(), "QQuickTextInput");
        EXPECT_EQ(codes.size(), 3);
        for (QQuickItem* code : codes) {
            const auto left = [code](int position) {
                QRectF place;
                QMetaObject::invokeMethod(code, "positionToRectangle", Q_RETURN_ARG(QRectF, place),
                                          Q_ARG(int, position));
                return place.x();
            };
            EXPECT_LT(left(1), left(6));
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

} // namespace MirrowvaleAuthenticator
