#pragma once

#include "model/sourceresult.h"
#include "store/notificationrules.h"
#include "store/silencestore.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

// Which changes between two passes are news: the decision, apart from the words that tell it.
namespace ChangeNews {

// An open incident as the news names it: its stage (in the common vocabulary) and its name.
struct IncidentMention {
    QString stage;
    QString name; // cleaned

    bool operator==(const IncidentMention &) const = default;
};

// One thing that can change: a source without components, or one component of a source.
// Names are cleaned feed text.
struct Watched {
    QString sourceId;
    QString sourceName;
    QString name;
    Health health;
    std::optional<WebLink> page;
    QList<IncidentMention> incidents; // its source's open incidents
    bool outagesOnly = false;         // going down and recovering from down are its only news
    bool maintenance = false;         // its trouble is planned work

    bool operator==(const Watched &) const = default;
};

// An open incident of a source not silenced.
struct OpenIncident {
    QString sourceId;
    QString sourceName;
    IncidentMention incident;
    std::optional<WebLink> page;

    bool operator==(const OpenIncident &) const = default;
};

// What the notifications compare: the effective health of everything neither silenced nor
// ruled out, by id, as the display sees it at now, and the open incidents, by source and
// incident id, of sources whose rule lets every change through. A component's rule is its
// own, or else its source's.
struct Snapshot {
    QHash<QString, Watched> items;
    QHash<QString, OpenIncident> incidents;
    // Every incident ever seen in this run, so that each is news once.
    QSet<QString> seenIncidents;
};
Snapshot snapshot(const QList<SourceResult> &results, const SilenceStore &silence,
                  const QDateTime &now, const NotificationRules::Entries &rules = {});

// The current snapshot with what it does not know taken from the last: an item unknown now
// keeps its last known health, and the items and incidents of a source whose check failed
// stay as they were. So degraded, then unreachable, then down is news of "down".
Snapshot lastKnown(const Snapshot &previous, Snapshot current);

struct Change {
    const Watched *watched; // into the later snapshot
    int rank;               // down 2, degraded 1, recovered 0
    Health from;            // what it was in the earlier snapshot
};

// What changed between two snapshots, pointing into the later one.
struct News {
    // Something becoming degraded or down, getting worse, or recovering to operational, worst
    // first, then by source and name; unknown on either side is no news, nor is anything that
    // was not watched before (new, or hidden by a silence until now).
    QList<Change> changes;
    // Incidents that opened on watched sources that stay operational, each once, by source
    // and name.
    QList<const OpenIncident *> opened;
};
// Nothing when nothing changed.
std::optional<News> between(const Snapshot &before, const Snapshot &after);

// What a quiet spell (quiet hours or a pause) saw: where each source stood when it began,
// and the worst each was in since.
struct QuietLog {
    Snapshot start;
    QHash<QString, Health> worst; // by source id
};
QuietLog quietFrom(const Snapshot &last);
void record(QuietLog &log, const Snapshot &current);

// A source whose standing changed over a quiet spell: from where it began, through the worst
// it reached, to where it is now.
struct QuietChange {
    QString sourceId;
    QString name;
    Health from;
    Health peak;
    Health to;
};
// By name; empty when nothing changed.
QList<QuietChange> afterQuiet(const QuietLog &log, const Snapshot &now);

// Follows the passes as notifications see them: each pass's snapshot completed from the last
// (lastKnown), and what a quiet spell saw. The desktop's notifier, the watcher's forwards and
// its feed of changes each follow the passes through one.
class Follower {
public:
    // What the pass just followed brings.
    enum class Step {
        first,      // nothing to compare it with yet
        quiet,      // muted: recorded for when the quiet spell ends
        afterQuiet, // a quiet spell ended: quietLog() holds what it saw, current() how it ends
        compared,   // previous() and current() are the last two passes
    };

    Step follow(Snapshot snapshot, bool muted = false);

    const Snapshot &previous() const { return m_previous; }
    const Snapshot &current() const { return m_current; }
    const QuietLog &quietLog() const { return m_endedQuiet; }

private:
    bool m_started = false;
    Snapshot m_previous;
    Snapshot m_current;
    std::optional<QuietLog> m_quiet; // while a quiet spell lasts
    QuietLog m_endedQuiet;
};

} // namespace ChangeNews

} // namespace lanternic
