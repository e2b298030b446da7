#pragma once

#include <QStringList>

class QLocale;
class QObject;

namespace lanternic {

// Installs the translations for a language (the app passes the desktop's: LANGUAGE, LC_ALL,
// LC_MESSAGES, LANG), Lanternic's from the first of folders that has them and Qt's own; the
// English plural forms go first, so that any language without a translation still reads
// "1 minute", "2 minutes". They last as long as owner. Returns the language installed, or an
// empty string for English.
QString installTranslations(const QLocale &locale, const QStringList &folders, QObject *owner);

} // namespace lanternic
