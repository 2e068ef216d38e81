#include "ui/screens/AddTokenView.h"

#include "core/CodeGeneration.h"
#include "core/OTPAuthURI.h"
#include "platform/text/LocalizedError.h"
#include "platform/text/Text.h"
#include "ui/screens/QtText.h"

#include <exception>
#include <string>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

AddTokenView::AddTokenView(TokenStore& store, std::function<void()> dismiss, QObject* parent)
    : QObject(parent), store_(store), dismiss_(std::move(dismiss))
{
}

QString AddTokenView::algorithm() const
{
    return qtFromUTF8(rawValue(algorithm_));
}

void AddTokenView::setAlgorithm(const QString& rawValue)
{
    if (const auto chosen = algorithmFromRawValue(utf8FromQt(rawValue))) {
        set(algorithm_, *chosen);
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

void AddTokenView::setError(const QString& message)
{
    error_ = message;
    emit errorChanged(); // also for the same message again: it is a new answer
}

bool AddTokenView::canImport() const
{
    return !trimmed(utf8FromQt(importURI_)).empty();
}

bool AddTokenView::canSave() const
{
    return !trimmed(utf8FromQt(secret_)).empty();
}

void AddTokenView::importFromURI()
{
    add([this] {
        const std::string text = utf8FromQt(importURI_);
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
            .issuer = std::string(trimmed(utf8FromQt(issuer_))),
            .account = std::string(trimmed(utf8FromQt(account_))),
            .secretBase32 = uppercased(removingSpaces(utf8FromQt(secret_))),
            .algorithm = algorithm_,
            .digits = digits_,
            .period = period_,
            .counter = 0,
            .createdAt = Date::now()};
}

void AddTokenView::add(const std::function<AuthToken()>& makeToken)
{
    if (!dismiss_) {
        return; // a second press while the sheet slides away adds no second token
    }
    try {
        AuthToken token = makeToken();
        static_cast<void>(currentCode(token, Date::now()));
        store_.tokens.modify([&](std::vector<AuthToken>& tokens) { tokens.push_back(std::move(token)); });
    } catch (const std::exception& failure) {
        setError(qtFromUTF8(localizedDescription(failure)));
        return;
    }
    store_.persist();
    cancel();
}

void AddTokenView::cancel()
{
    if (const auto dismiss = std::exchange(dismiss_, nullptr)) {
        dismiss();
    }
}

} // namespace MirrowvaleAuthenticator
