#include "config/settingsfile.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <algorithm>

namespace lanternic::SettingsFile {

void removeLeftovers(const QString &settingsFile, const QDateTime &now)
{
    const QFileInfo settings(settingsFile);
    if (settings.fileName().isEmpty())
        return;
    const QDir dir = settings.dir();
    const QStringList candidates =
        dir.entryList({settings.fileName() + QStringLiteral(".??????")}, QDir::Files);
    for (const QString &name : candidates) {
        const QFileInfo file(dir.filePath(name));
        // Random suffixes of letters and digits nearly always mix cases; a user's
        // "Lanternic.conf.backup" does not.
        const QStringView suffix = QStringView(name).last(6);
        auto any = [&](auto test) { return std::any_of(suffix.begin(), suffix.end(), test); };
        const bool random =
            !any([](QChar c) { return c.unicode() > 127 || !c.isLetterOrNumber(); }) &&
            any([](QChar c) { return c.isUpper(); }) && any([](QChar c) { return c.isLower(); });
        if (random && file.lastModified().secsTo(now) > 60)
            QFile::remove(file.filePath());
    }
    // A lock whose process is gone counts as stale: taking it removes it, releasing it too.
    const QString lockPath = settings.filePath() + QStringLiteral(".lock");
    QLockFile lock(lockPath);
    if (QFileInfo::exists(lockPath) && lock.tryLock(0))
        lock.unlock();
}

void update(QSettings &settings, const std::function<void()> &change)
{
    // Not QSettings' own lock, which it takes only while it syncs.
    QLockFile lock(settings.fileName() + QStringLiteral(".merge-lock"));
    lock.setStaleLockTime(std::chrono::seconds(30));
    const bool locked = lock.tryLock(std::chrono::seconds(5));
    settings.sync();
    change();
    settings.sync();
    if (locked)
        lock.unlock();
}

} // namespace lanternic::SettingsFile
