#include "config/settingsfile.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>
#include <algorithm>

namespace lanternic::SettingsFile {

void removeLeftovers(const QString &settingsFile, const QDateTime &now)
{
    const QFileInfo settings(settingsFile);
    if (settings.fileName().isEmpty())
        return;
    const QDir dir = settings.dir();
    const QRegularExpression temporary(QRegularExpression::anchoredPattern(
        QRegularExpression::escape(settings.fileName()) + QStringLiteral("\\.[A-Za-z0-9]{6}")));
    const QStringList candidates =
        dir.entryList({settings.fileName() + QStringLiteral(".??????")}, QDir::Files);
    for (const QString &name : candidates) {
        const QFileInfo file(dir.filePath(name));
        // Random suffixes nearly always mix cases; a user's "Lanternic.conf.backup" does not.
        const QStringView suffix = QStringView(name).last(6);
        const bool mixed =
            std::any_of(suffix.begin(), suffix.end(), [](QChar c) { return c.isUpper(); }) &&
            std::any_of(suffix.begin(), suffix.end(), [](QChar c) { return c.isLower(); });
        if (mixed && temporary.match(name).hasMatch() && file.lastModified().secsTo(now) > 60)
            QFile::remove(file.filePath());
    }
    // A lock whose process is gone counts as stale: taking it removes it, releasing it too.
    QLockFile lock(settings.filePath() + QStringLiteral(".lock"));
    if (QFileInfo::exists(settings.filePath() + QStringLiteral(".lock")) && lock.tryLock(0))
        lock.unlock();
}

} // namespace lanternic::SettingsFile
