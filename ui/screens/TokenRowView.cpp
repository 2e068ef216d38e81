#include "ui/screens/TokenRowView.h"

#include "core/CodeGeneration.h"
#include "platform/text/Text.h"
#include "ui/desktop/Pasteboard.h"
#include "ui/screens/QtText.h"

#include <exception>
#include <string>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::int64_t urgentSeconds = 5;

} // namespace

TokenRowView::TokenRowView(const AuthToken& token, Date now, bool copied)
    : token_(token), now_(now), copied_(copied)
{
}

QString TokenRowView::issuer() const
{
    return token_.issuer.empty() ? QStringLiteral("Token") : qtFromUTF8(token_.issuer);
}

QString TokenRowView::account() const
{
    return token_.account.empty() ? QStringLiteral("Account") : qtFromUTF8(token_.account);
}

QString TokenRowView::code() const
{
    try {
        return qtFromUTF8(currentCode(token_, now_));
    } catch (const std::exception&) {
        return QStringLiteral("------");
    }
}

std::int64_t TokenRowView::seconds() const
{
    return secondsRemaining(token_, now_);
}

QString TokenRowView::countdown() const
{
    return tr("%1s").arg(seconds());
}

QString TokenRowView::longestCountdown() const
{
    return tr("%1s").arg(token_.period);
}

bool TokenRowView::isUrgent() const
{
    return seconds() <= urgentSeconds;
}

void TokenRowView::copyCode() const
{
    Pasteboard::setString(code());
}

QString TokenRowView::displayCode(const QString& code)
{
    const std::string text = utf8FromQt(code);
    const auto parts = characters(text);
    if (parts.size() != 6) {
        return code;
    }
    const auto firstHalf = static_cast<std::size_t>(parts[3].data() - text.data());
    return qtFromUTF8(text.substr(0, firstHalf) + ' ' + text.substr(firstHalf));
}

} // namespace MirrowvaleAuthenticator
