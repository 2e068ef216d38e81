#include "ui/screens/QtText.h"

#include <QList>

namespace MirrowvaleAuthenticator {

std::string utf8FromQt(const QString& text)
{
    if (text.isValidUtf16()) {
        return text.toStdString();
    }
    const QList<uint> codePoints = text.toUcs4();
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(codePoints.constData()), codePoints.size())
        .toStdString();
}

} // namespace MirrowvaleAuthenticator
