#include "tests/ui/ScreenFixture.h"
#include "ui/screens/AddTokenView.h"

#include <tuple>

namespace MirrowvaleAuthenticator {

class AddTokenViewTest : public ScreenTest {
protected:
    int dismissals = 0;
    AddTokenView form{store, [this] { ++dismissals; }};
};

TEST_F(AddTokenViewTest, eachButtonLooksAtItsOwnTrimmedText)
{
    form.setIssuer(QStringLiteral("issuer"));
    for (const auto& [text, enabled] :
         {std::pair{QStringLiteral(" \t\u3000\u0085"), false}, {QStringLiteral(" = "), true}}) {
        form.setImportURI(text);
        form.setSecret(QString());
        EXPECT_EQ(form.canImport(), enabled);
        EXPECT_FALSE(form.canSave());
        form.setImportURI(QString());
        form.setSecret(text);
        EXPECT_FALSE(form.canImport());
        EXPECT_EQ(form.canSave(), enabled);
    }
}

TEST_F(AddTokenViewTest, steppersAndPickerKeepToTheirValues)
{
    for (const auto& [entered, digits, period] : {std::tuple{5, 6, 15}, {200, 8, 90}}) {
        form.setDigits(entered);
        form.setPeriod(entered);
        EXPECT_EQ(form.digits(), digits);
        EXPECT_EQ(form.period(), period);
    }
    form.setAlgorithm(QStringLiteral("SHA512"));
    form.setAlgorithm(QStringLiteral("sha256"));
    EXPECT_EQ(form.algorithm(), QStringLiteral("SHA512"));
}

TEST_F(AddTokenViewTest, failuresAreToldAndChangeNothingNorDoesCancel)
{
    const std::pair<QString, const char*> failures[] = {
        {QStringLiteral("otpauth://totp/a?secret=GEZDGNBV&digits=9"),
         "Only 6, 7, and 8 digit OTP codes are supported."},
        {QStringLiteral("otpauth://totp/a?secret=GE1"), "Invalid Base32 character: 1"},
        {QStringLiteral("otpauth://totp/") + QChar(0xDC00), "Enter a valid otpauth:// URI."},
        {QStringLiteral("abc\u00e91"), "Invalid Base32 character: \u00c9"},
        {QStringLiteral("===="), "The token secret is not valid Base32."},
        {QStringLiteral("AB\tCD"), "Invalid Base32 character: \t"},
        {QString(QChar(0xD800)), "Invalid Base32 character: \ufffd"},
    };
    for (const auto& [text, message] : failures) {
        form.setImportURI(text);
        form.setSecret(text);
        text.startsWith(u'o') ? form.importFromURI() : form.saveManualToken();
        EXPECT_EQ(form.error().toStdString(), message);
        form.setSecret(QStringLiteral("edited"));
        EXPECT_EQ(form.error().toStdString(), message) << "editing clears nothing";
    }
    EXPECT_EQ(dismissals, 0);
    form.cancel();
    EXPECT_EQ(dismissals, 1);
    EXPECT_EQ(listed(), "");
    EXPECT_EQ(saves(), 0U);
}

TEST_F(AddTokenViewTest, addsWhatWasEnteredByHandEvenWhereSavingFails)
{
    list("x");
    credentials.answerNext(ScriptedCredentialStore::Operation::update, errSecInteractionNotAllowed);
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
    EXPECT_EQ(*store.lastError, "Keychain operation failed with status -25308.");

    form.saveManualToken(); // pressed again while the sheet slides away
    form.cancel();
    EXPECT_EQ(store.tokens->size(), 2U);
    EXPECT_EQ(dismissals, 1);
}

} // namespace MirrowvaleAuthenticator
