#pragma once

#include <QGuiApplication>
#include <QString>
#include <QStringList>

namespace MirrowvaleAuthenticator {

/// The translation that serves a user best, such as "pt_BR". A translation serves every region that writes
/// its language in the same script.
///
/// @param wanted  languages as BCP 47 names, the most wanted first
/// @returns       empty for English, the language of the sources
QString bestTranslation(const QStringList& wanted);

/// Loads the texts of a translation, and lays the interface out in the direction of its language.
///
/// @param translation  one that was built in; empty for English, which has nothing to load
void useTranslation(QGuiApplication& application, const QString& translation);

} // namespace MirrowvaleAuthenticator
