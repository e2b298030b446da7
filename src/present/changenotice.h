#pragma once

#include "store/changenews.h"

#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

// What a desktop notification says about the news between two passes.
namespace ChangeNotice {

struct Notice {
    QString title;      // the worst change: "GitHub is down", "GitHub recovered"
    QString body;       // up to three changes, one a line, then "and N more"
    Health worst;       // down, degraded, or operational when everything recovered
    bool quiet = false; // only new incidents on sources that stay operational: low urgency
    QString sourceId;   // the source of the worst change
    std::optional<QUrl> page;

    bool operator==(const Notice &) const = default;
};

// "GitHub is down", "GitHub recovered", "GitHub is under maintenance": a change of a source.
QString headline(const ChangeNews::Watched &item);
// "Git Operations — down", "Git Operations — under maintenance": a change as a line.
QString changeLine(const ChangeNews::Watched &item);
// A change that stands alone: the headline of a source's, "GitHub — Git Operations — down"
// for a component's.
QString titledChange(const ChangeNews::Watched &item);
// "Investigating: Slow responses".
QString incidentLine(const ChangeNews::IncidentMention &incident);
// "GitHub: new incident — Slow responses".
QString openedLine(const ChangeNews::OpenIncident &incident);
// "GitHub went down and recovered": a source's change over a quiet spell.
QString quietText(const ChangeNews::QuietChange &change);

// A source that gets worse names its open incidents first; incidents that opened elsewhere
// come last. Nothing when nothing changed.
std::optional<Notice> between(const ChangeNews::Snapshot &before,
                              const ChangeNews::Snapshot &after);

// The one notification when a quiet spell ends: what changed meanwhile and how it stands now
// ("GitHub went down and recovered; Slack is degraded"). Nothing when nothing changed.
std::optional<Notice> afterQuiet(const ChangeNews::QuietLog &log, const ChangeNews::Snapshot &now);

} // namespace ChangeNotice

} // namespace lanternic
