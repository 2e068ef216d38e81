#include "ui/TokenRowItem.h"

#include <QStringList>

namespace MirrowvaleAuthenticator {

QString TokenRowItem::spokenText() const
{
    QString digits;
    for (const QChar digit : displayCode) {
        if (!digit.isSpace()) {
            digits += digits.isEmpty() ? QString(digit) : QLatin1Char(' ') + digit;
        }
    }
    QStringList parts{issuer, account, digits};
    if (!offersNext) {
        parts += countdown;
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace MirrowvaleAuthenticator
