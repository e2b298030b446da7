#pragma once

#include "model/sourceresult.h"
#include "store/silencestore.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
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

    bool operator==(const Watched &) const = default;
};

// The effective health of everything not silenced, by id, as the display sees it at now.
using Snapshot = QHash<QString, Watched>;
Snapshot snapshot(const QList<SourceResult> &results, const SilenceStore &silence,
                  const QDateTime &now);

struct Notice {
    QString title;    // the worst change: "GitHub is down", "GitHub recovered"
    QString body;     // up to three changes, one a line, then "and N more"
    Health worst;     // down, degraded, or operational when everything recovered
    QString sourceId; // the source of the worst change
    std::optional<QUrl> page;

    bool operator==(const Notice &) const = default;
};

// A change is something becoming degraded or down, getting worse, or recovering to
// operational; unknown on either side is no news, nor is anything that was not watched
// before (new, or hidden by a silence until now). Nothing when nothing changed.
std::optional<Notice> between(const Snapshot &before, const Snapshot &after);

} // namespace ChangeNotice

} // namespace lanternic
