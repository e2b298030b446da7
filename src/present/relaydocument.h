#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

class LanternicStore;

// The latest pass as one "lanternic.v1" relay feed, which Lanternic's own relay reader
// accepts: one component per display row (its source id, name, effective health and detail),
// the summary as the detail, the overall health. Feed text goes out cleaned and capped, as
// it would be shown. Compact JSON.
QByteArray relayDocument(const LanternicStore &store, const QString &name,
                         const std::optional<QUrl> &url);

} // namespace lanternic
