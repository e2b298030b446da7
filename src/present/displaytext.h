#pragma once

#include "model/sourceresult.h"
#include "store/silencestore.h"

#include <QDateTime>
#include <QString>
#include <optional>

namespace lanternic {

// Texts about time that the panel and lanternic-check both show.
namespace DisplayText {

// "Never updated", "Updated just now", "Updated 42s ago", … "Updated 3d ago".
QString lastCheckText(const std::optional<QDateTime> &lastChecked, const QDateTime &now);
// "until resolved", "forever", "2d 5h left", "1h 0m left", "0m left".
QString timeLeftText(const SilenceUntil &until, const QDateTime &now);

// "just now", "12 min ago", "3 h ago", "2 d ago".
QString agoText(const QDateTime &then, const QDateTime &now);
// An incident's stage as a word to show, in the user's language: "Investigating".
QString stageText(const QString &stage);
// A component's status word as people read it: the platforms' usual words in ours
// ("major outage"), any other as the feed wrote it, cleaned.
QString componentStatusText(const QString &status);
// "Investigating: Incident with Packages and Pages (updated 25 min ago)", feed text cleaned.
QString incidentLine(const Incident &incident, const QDateTime &now, qsizetype maximum = 200);
// A window in local time: "Today 02:00–06:00", "Tue 09:00–21:00", "Tue 22:00 – Wed 02:00".
QString windowText(const Maintenance &window, const QDateTime &now);
// "Maintenance: Database upgrade (Today 02:00–06:00)", feed text cleaned.
QString maintenanceLine(const Maintenance &window, const QDateTime &now, qsizetype maximum = 200);

} // namespace DisplayText

// "For 2 hours", "Until resolved", "Forever": a choice in the silence menus.
QString label(SilenceDuration duration);

} // namespace lanternic
