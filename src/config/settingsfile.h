#pragma once

#include <QDateTime>
#include <QString>

namespace lanternic::SettingsFile {

// What a killed writer leaves beside the settings file: QSaveFile's temporary copies
// ("Lanternic.conf.XXXXXX", a random suffix of six letters and digits) and QSettings' lock
// file. Temporary copies older than a minute (no writer takes that long) are removed; the lock
// file goes only when no live process holds it.
void removeLeftovers(const QString &settingsFile, const QDateTime &now);

} // namespace lanternic::SettingsFile
