#include "ui/AddTokenView.h"

#include "core/CodeGeneration.h"
#include "core/OTPAuthURI.h"
#include "platform/LocalizedError.h"
#include "platform/Text.h"
#include "ui/QtText.h"

#include <exception>
#include <string>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

AddTokenView::AddTokenView(TokenStore& receivingStore, std::function<void()> endPresentation, QObject* parent)
    : QObject(parent), store(receivingStore), dismiss(std::move(endPresentation))
{
}

void AddTokenView::setImportURI(const QString& text)
{
    if (std::exchange(uriText, text) != text) {
        emit importURIChanged();
    }
}

void AddTokenView::setIssuer(const QString& text)
{
    if (std::exchange(issuerText, text) != text) {
        emit issuerChanged();
    }
}

void AddTokenView::setAccount(const QString& text)
{
    if (std::exchange(accountText, text) != text) {
        emit accountChanged();
    }
}

void AddTokenView::setSecret(const QString& text)
{
    if (std::exchange(secretText, text) != text) {
        emit secretChanged();
    }
}

QString AddTokenView::algorithm() const
{
    return qtFromUTF8(rawValue(choice));
}

void AddTokenView::setAlgorithm(const QString& rawValue)
{
    const auto chosen = algorithmFromRawValue(utf8FromQt(rawValue));
    if (chosen && std::exchange(choice, *chosen) != *chosen) {
        emit algorithmChanged();
    }
}

QStringList AddTokenView::algorithms() const
{
    QStringList names;
    for (const auto algorithm : allAlgorithms) {
        names += qtFromUTF8(rawValue(algorithm));
    }
    return names;
}

void AddTokenView::setDigits(int value)
{
    if (std::exchange(digitCount, digitsRange().clamped(value)) != digitCount) {
        emit digitsChanged();
    }
}

void AddTokenView::setPeriod(int value)
{
    if (std::exchange(seconds, periodRange().clamped(value)) != seconds) {
        emit periodChanged();
    }
}

void AddTokenView::setError(const QString& message)
{
    errorText = message;
    emit errorChanged(); // also for the same message again: it is a new answer
}

bool AddTokenView::canImport() const
{
    return !trimmed(utf8FromQt(uriText)).empty();
}

bool AddTokenView::canSave() const
{
    return !trimmed(utf8FromQt(secretText)).empty();
}

void AddTokenView::importFromURI()
{
    add([this] {
        const std::string text = utf8FromQt(uriText);
        return parseOTPAuthURI(trimmed(text));
    });
}

void AddTokenView::saveManualToken()
{
    add([this] { return manualToken(); });
}

AuthToken AddTokenView::manualToken() const
{
    return {.id = UUID::random(),
            .kind = AuthToken::Kind::totp,
            .issuer = std::string(trimmed(utf8FromQt(issuerText))),
            .account = std::string(trimmed(utf8FromQt(accountText))),
            .secretBase32 = uppercased(removingSpaces(utf8FromQt(secretText))),
            .algorithm = choice,
            .digits = digitCount,
            .period = seconds,
            .counter = 0,
            .createdAt = Date::now()};
}

void AddTokenView::add(const std::function<AuthToken()>& makeToken)
{
    if (!dismiss) {
        return; // a second press while the sheet slides away adds no second token
    }
    try {
        AuthToken token = makeToken();
        static_cast<void>(currentCode(token, Date::now()));
        store.tokens.modify([&](std::vector<AuthToken>& tokens) { tokens.push_back(std::move(token)); });
    } catch (const std::exception& failure) {
        setError(qtFromUTF8(localizedDescription(failure)));
        return;
    }
    store.persist();
    cancel();
}

void AddTokenView::cancel()
{
    if (const auto endPresentation = std::exchange(dismiss, nullptr)) {
        endPresentation();
    }
}

} // namespace MirrowvaleAuthenticator
