#include "tests/ui/ScreenFixture.h"
#include "ui/screens/AddTokenView.h"

#include <QStringList>

namespace MirrowvaleAuthenticator {
namespace {

class AddTokenViewTest : public ScreenTest {
protected:
    int dismissals = 0;
    AddTokenView form{store, [this] { ++dismissals; }};
};

TEST_F(AddTokenViewTest, eachButtonLooksAtItsOwnTrimmedText)
{
    const std::pair<QString, bool> cases[] = {
        {QString(), false},
        {QStringLiteral(" \t\r\n"), false},
        {QStringLiteral("\u00a0\u3000\u2028\u2029\u0085"), false},
        {QStringLiteral("\u200b"), true}, // the zero-width space is no white space
        {QStringLiteral(" = "), true},
        {QString(QChar(0xD800)), true},
    };
    for (const auto& [text, enabled] : cases) {
        form.setIssuer(QStringLiteral("issuer"));
        form.setImportURI(text);
        EXPECT_EQ(form.canImport(), enabled) << text.toStdString();
        EXPECT_FALSE(form.canSave());
        form.setImportURI(QString());
        form.setSecret(text);
        EXPECT_EQ(form.canSave(), enabled) << text.toStdString();
        EXPECT_FALSE(form.canImport());
        form.setSecret(QString());
    }
}

TEST_F(AddTokenViewTest, steppersAndPickerKeepToTheirValues)
{
    EXPECT_EQ(form.algorithms(),
              (QStringList{QStringLiteral("SHA1"), QStringLiteral("SHA256"), QStringLiteral("SHA512")}));
    form.setDigits(5);
    EXPECT_EQ(form.digits(), 6);
    form.setDigits(9);
    EXPECT_EQ(form.digits(), 8);
    form.setPeriod(10);
    EXPECT_EQ(form.period(), 15);
    form.setPeriod(95);
    EXPECT_EQ(form.period(), 90);
    EXPECT_EQ(form.periodRange().step, 5);
    form.setAlgorithm(QStringLiteral("SHA512"));
    form.setAlgorithm(QStringLiteral("sha256"));
    EXPECT_EQ(form.algorithm(), QStringLiteral("SHA512"));
}

TEST_F(AddTokenViewTest, failuresAreToldAndChangeNothingNorDoesCancel)
{
    const std::pair<QString, const char*> imports[] = {
        {QStringLiteral("otpauth://totp/a?secret=GEZDGNBV&digits=9"),
         "Only 6, 7, and 8 digit OTP codes are supported."},
        {QStringLiteral("otpauth://totp/a?secret=GE1"), "Invalid Base32 character: 1"},
        {QStringLiteral("otpauth://totp/") + QChar(0xDC00), "Enter a valid otpauth:// URI."},
    };
    for (const auto& [text, message] : imports) {
        form.setImportURI(text);
        form.importFromURI();
        EXPECT_EQ(form.error().toStdString(), message);
    }
    const std::pair<QString, const char*> secrets[] = {
        {QStringLiteral("abc\u00e91"), "Invalid Base32 character: \u00c9"},
        {QStringLiteral("===="), "The token secret is not valid Base32."},
        {QStringLiteral("AB\tCD"), "Invalid Base32 character: \t"},
        {QString(QChar(0xD800)), "Invalid Base32 character: \ufffd"},
    };
    for (const auto& [text, message] : secrets) {
        form.setSecret(text);
        form.saveManualToken();
        EXPECT_EQ(form.error().toStdString(), message);
        form.setSecret(QStringLiteral("edited"));
        EXPECT_EQ(form.error().toStdString(), message); // editing clears nothing
    }
    EXPECT_EQ(dismissals, 0);
    form.cancel();
    EXPECT_EQ(dismissals, 1);
    EXPECT_EQ(listed(), "");
    EXPECT_EQ(saves(), 0U);
}

TEST_F(AddTokenViewTest, savesWhatWasEnteredByHand)
{
    list("x");
    form.setImportURI(QStringLiteral("otpauth://hotp/ignored?secret=AA"));
    form.setIssuer(QStringLiteral("\u00a0 My  Bank \n"));
    form.setAccount(QStringLiteral("\tada "));
    form.setSecret(QStringLiteral(" gezd gnbv gy3t qojq "));
    form.setAlgorithm(QStringLiteral("SHA256"));
    form.setDigits(8);
    form.setPeriod(45);
    form.saveManualToken();
    ASSERT_EQ(store.tokens->size(), 2U);
    const AuthToken& token = store.tokens->back();
    EXPECT_EQ(token,
              (AuthToken{token.id, AuthToken::Kind::totp, "My  Bank", "ada", "GEZDGNBVGY3TQOJQ",
                         AuthToken::Algorithm::sha256, 8, 45, 0, token.createdAt}));
    EXPECT_EQ(dismissals, 1);

    form.saveManualToken(); // pressed again while the sheet slides away
    form.cancel();
    EXPECT_EQ(store.tokens->size(), 2U);
    EXPECT_EQ(dismissals, 1);
}

TEST_F(AddTokenViewTest, importsAURIAlsoAfterAFailureAndWhereSavingFails)
{
    credentials.answerAlways(ScriptedCredentialStore::Operation::update, errSecInteractionNotAllowed);
    form.setImportURI(QStringLiteral("nothing"));
    form.importFromURI();
    EXPECT_EQ(dismissals, 0);
    form.setSecret(QStringLiteral("not looked at"));
    form.setImportURI(QStringLiteral(" otpauth://hotp/Bank:ada?secret=GEZDGNBV&counter=7\r\n"));
    form.importFromURI();
    ASSERT_EQ(listed(), "Bank");
    EXPECT_EQ(store.tokens->front().kind, AuthToken::Kind::hotp);
    EXPECT_EQ(store.tokens->front().counter, 7U);
    EXPECT_EQ(dismissals, 1);
    EXPECT_EQ(*store.lastError, "Keychain operation failed with status -25308.");
}

} // namespace
} // namespace MirrowvaleAuthenticator
