#pragma once

#include <QDateTime>
#include <QString>
#include <functional>

class QSettings;

namespace lanternic::SettingsFile {

// What a killed writer leaves beside the settings file: QSaveFile's temporary copies
// ("Lanternic.conf.XXXXXX", a random suffix of six letters and digits) and QSettings' lock
// file. Temporary copies older than a minute (no writer takes that long) are removed; the lock
// file goes only when no live process holds it.
void removeLeftovers(const QString &settingsFile, const QDateTime &now);

// Runs change between reading what other programs stored in settings meanwhile and writing it
// back, with no other Lanternic program on the same file doing the same: what change merges
// into the stored values is not lost to a writer that read them just before.
void update(QSettings &settings, const std::function<void()> &change);

} // namespace lanternic::SettingsFile
