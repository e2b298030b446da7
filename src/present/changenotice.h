#pragma once

#include "model/sourceresult.h"
#include "store/notificationrules.h"
#include "store/silencestore.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <optional>

namespace lanternic {

// What a desktop notification says about the changes between two passes.
namespace ChangeNotice {

// One thing that can change: a source without components, or one component of a source.
struct Watched {
    QString sourceId;
    QString sourceName;
    QString name;
    Health health;
    std::optional<QUrl> page;
    QStringList incidents;    // its source's open incidents, "Investigating: name", cleaned
    bool outagesOnly = false; // going down and recovering from down are its only news
    bool maintenance = false; // its trouble is planned work

    bool operator==(const Watched &) const = default;
};

// An open incident of a source not silenced.
struct OpenIncident {
    QString sourceId;
    QString sourceName;
    QString name; // cleaned
    QString line; // "Investigating: name"
    std::optional<QUrl> page;

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

struct Notice {
    QString title;      // the worst change: "GitHub is down", "GitHub recovered"
    QString body;       // up to three changes, one a line, then "and N more"
    Health worst;       // down, degraded, or operational when everything recovered
    bool quiet = false; // only new incidents on sources that stay operational: low urgency
    QString sourceId;   // the source of the worst change
    std::optional<QUrl> page;

    bool operator==(const Notice &) const = default;
};

// A change is something becoming degraded or down, getting worse, or recovering to
// operational; unknown on either side is no news, nor is anything that was not watched
// before (new, or hidden by a silence until now). A source that gets worse names its open
// incidents first. An incident that opens on a watched source that stays operational is news
// too, once. Nothing when nothing changed.
std::optional<Notice> between(const Snapshot &before, const Snapshot &after);

// What a quiet spell (quiet hours or a pause) saw: where each source stood when it began,
// and the worst each was in since.
struct QuietLog {
    Snapshot start;
    QHash<QString, Health> worst; // by source id
};
QuietLog quietFrom(const Snapshot &last);
void record(QuietLog &log, const Snapshot &current);

// The one notification when a quiet spell ends: what changed meanwhile and how it stands now
// ("GitHub went down and recovered; Slack is degraded"). Nothing when nothing changed.
std::optional<Notice> afterQuiet(const QuietLog &log, const Snapshot &now);

} // namespace ChangeNotice

} // namespace lanternic
