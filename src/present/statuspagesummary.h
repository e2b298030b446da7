#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

class LanternicStore;

// The whole view of a store as a Statuspage summary (/api/v2/summary.json), for the tools that
// already read status pages: one component per visible source, and one per affected component
// of a source, in Statuspage's status words; the page's indicator and description from the
// overall health and the summary; the open incidents and the maintenance windows, named after
// their sources. Statuspage has no word for a health not known: such a source reads back as
// degraded, as a Statuspage reader takes any word it does not know. Compact JSON.
QByteArray statuspageSummary(const LanternicStore &store, const QString &name,
                             const std::optional<QUrl> &url);

} // namespace lanternic
