#pragma once

#include <QString>

#include <string>
#include <string_view>

/// Conversion between Qt's text (UTF-16) and that of the modules below (UTF-8).
namespace MirrowvaleAuthenticator {

/// `text` as UTF-8; a surrogate without its other half becomes U+FFFD.
inline std::string utf8FromQt(const QString& text)
{
    // From UTF-16 at once, such a surrogate would become "?".
    return QString::fromStdU32String(text.toStdU32String()).toStdString();
}

/// `text` for Qt; bytes that are not UTF-8 become U+FFFD.
inline QString qtFromUTF8(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace MirrowvaleAuthenticator
