#pragma once

#include "model/health.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QStringList>
#include <optional>

class QSettings;

namespace lanternic {

// A change in a source's health as read (not as silenced), or the moment watching stopped.
struct HealthChange {
    QDateTime at;
    std::optional<Health> health; // nothing: watching stopped (not running, asleep, offline)
    QStringList incidents;        // the incidents the page named at the time

    bool operator==(const HealthChange &) const = default;
};

// One stretch of trouble: from leaving operational to coming back (or to a gap in watching).
struct Trouble {
    QDateTime start;
    std::optional<QDateTime> end; // nothing while it goes on
    Health worst = Health::degraded;
    QStringList incidents;

    bool operator==(const Trouble &) const = default;
};

// What a window of the log says of one source.
struct Uptime {
    std::optional<double> share; // operational share of the watched time; nothing unwatched
    qint64 watchedSeconds = 0;   // known health only: unknown time and gaps are left out
    QList<Trouble> troubles;     // oldest first, cut to the window
};

// Per source, the changes of its health over the last 90 days, kept under
// "Lanternic.healthLog" and written only when something changed.
class HealthLog {
public:
    static constexpr int keptDays = 90;
    // Bounds that hold whatever a page does: a feed that renames its incident every pass
    // adds a few named changes to a stretch of one health, not one a pass; a source's
    // changes past its byte budget go oldest first; a trouble names a few incidents.
    static constexpr int namedChangesPerStretch = 8;
    static constexpr qsizetype bytesPerSource = 64 * 1024;
    static constexpr int incidentsPerTrouble = 20;
    static constexpr int incidentsPerChange = 5;
    static constexpr qsizetype incidentNameLength = 200;

    QHash<QString, QList<HealthChange>> byId;

    bool operator==(const HealthLog &) const = default;

    // One pass's reading of a source at now; lastSeen is when it was read before (the
    // previous pass's time), so that a long silence between the two is a gap, not uptime.
    // True when the log changed.
    bool record(const QString &id, Health health, const QStringList &incidents,
                const QDateTime &now, const std::optional<QDateTime> &lastSeen);
    // Watching stopped at the time given (the network went away); true when the log changed.
    bool stop(const QString &id, const QDateTime &at);
    // Drops what is older than the kept days, keeping the state the window starts in; true
    // when something went.
    bool trim(const QDateTime &now);
    // Takes in the changes another program on the same settings stored.
    void merge(const HealthLog &other);

    Uptime uptime(const QString &id, const QDateTime &from, const QDateTime &to) const;

    // Nothing stored gives an empty log; nothing when what is stored cannot be read at all,
    // so that it is not saved over. Entries that cannot be read are skipped one by one.
    static std::optional<HealthLog> load(QSettings &defaults);
    void save(QSettings &defaults) const;
    QByteArray encode() const;
    static std::optional<HealthLog> decode(const QByteArray &data);
};

} // namespace lanternic
