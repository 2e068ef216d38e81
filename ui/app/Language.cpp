#include "ui/app/Language.h"

#include <QDir>
#include <QLocale>
#include <QTranslator>

#include <algorithm>

namespace MirrowvaleAuthenticator {

namespace {

bool readAlike(const QLocale& one, const QLocale& other)
{
    return one.language() == other.language() && one.script() == other.script();
}

} // namespace

QString bestTranslation(const QStringList& wanted)
{
    const QStringList translations = QDir(QStringLiteral(":/i18n")).entryList();
    for (const QString& name : wanted) {
        const QLocale reader(name);
        if (reader.language() == QLocale::English) {
            return {};
        }
        const auto best = std::ranges::find_if(translations, [&reader](const QString& translation) {
            return readAlike(QLocale(translation), reader);
        });
        if (best != translations.end()) {
            return *best;
        }
    }
    return {};
}

/// The toolkit's own word in the names of keys, of which it has no translation here.
[[maybe_unused]] constexpr auto nameOfControlKey = QT_TRANSLATE_NOOP("QShortcut", "Ctrl");

void useTranslation(QGuiApplication& application, const QString& translation)
{
    if (translation.isEmpty()) {
        return;
    }
    auto* translator = new QTranslator(&application);
    if (translator->load(QStringLiteral(":/i18n/") + translation)) {
        QCoreApplication::installTranslator(translator);
        QGuiApplication::setLayoutDirection(QLocale(translation).textDirection());
    }
}

} // namespace MirrowvaleAuthenticator
