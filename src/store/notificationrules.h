#pragma once

#include "model/settingskeys.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QString>
#include <QTime>
#include <optional>

class QSettings;

namespace lanternic {

// What the user wants to hear of a source or a component.
enum class NotifyRule { all, outagesOnly, never };

// Nothing pops up between start and end, local time; the span may cross midnight.
struct QuietHours {
    bool enabled = SettingsKeys::quietHours.fallback;
    QTime start = SettingsKeys::quietHoursStart.fallback.time();
    QTime end = SettingsKeys::quietHoursEnd.fallback.time();

    bool contains(const QTime &time) const;
    bool operator==(const QuietHours &) const = default;
};

// The user's terms for notifications: a rule per source or component id (stored like the
// silences, "all" by leaving the id out), quiet hours, and a pause.
class NotificationRules : public QObject {
    Q_OBJECT

public:
    using Entries = QHash<QString, NotifyRule>;

    explicit NotificationRules(QSettings &defaults, QObject *parent = nullptr);

    const Entries &entries() const { return m_entries; }
    NotifyRule rule(const QString &id) const { return m_entries.value(id, NotifyRule::all); }
    void setRule(const QString &id, NotifyRule rule);
    // Moves rules kept under older forms of source ids, as the silences are moved.
    void rekey(const QList<std::pair<QString, QString>> &sources);

    QuietHours quietHours() const { return m_quietHours; }
    void setQuietHours(const QuietHours &hours);
    QDateTime pausedUntil() const { return m_pausedUntil; }
    void pauseUntil(const QDateTime &until);
    bool isPaused(const QDateTime &now) const
    {
        return m_pausedUntil.isValid() && now < m_pausedUntil;
    }

    // Whether notifications are held back at now: quiet hours or a pause.
    bool isMuted(const QDateTime &now) const;

    static QByteArray encode(const Entries &entries);
    static std::optional<Entries> decode(const QByteArray &data);

    // Reads everything again from the settings, which another program changed.
    void reload();

Q_SIGNALS:
    void changed();

private:
    void load();
    void replaceEntries(Entries entries);

    QSettings &m_defaults;
    Entries m_entries;
    QuietHours m_quietHours;
    QDateTime m_pausedUntil;
};

} // namespace lanternic
