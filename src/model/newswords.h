#pragma once

#include <QString>
#include <QStringView>

namespace lanternic {

// One vocabulary for the news of every platform, Statuspage's: whatever word a page wrote
// ("INVESTIGATING", "PARTIALOUTAGE", "INPROGRESS", a Cachet number), its incidents and
// maintenance windows carry these, so that JSON, relay feeds and the texts made from them
// read the same for every platform.
namespace NewsWords {

// "investigating", "identified", "monitoring" or "resolved"; an open incident whose page
// names no known stage is "investigating".
QString stage(QStringView word);
// "none", "minor", "major", "critical" or "maintenance"; "" where the page gives none or a
// word of its own.
QString impact(QStringView word);
// "scheduled", "in_progress", "verifying" or "completed"; "scheduled" when unknown.
QString maintenanceStatus(QStringView word);

} // namespace NewsWords

} // namespace lanternic
