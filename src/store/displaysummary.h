#pragma once

#include "model/sourceresult.h"
#include "store/silencestore.h"

#include <QDateTime>
#include <QList>

namespace lanternic {

// One row of the panel: a source that is not silenced, as the user should see it.
struct DisplayProvider {
    SourceResult result;
    Health health; // the effective health: silenced components left out
    QString detail;
    // Its only trouble is planned work: shown with the maintenance symbol, its health as is.
    bool maintenance = false;

    bool operator==(const DisplayProvider &) const = default;
};

// What the user sees, derived on demand from the results (in configured order) and the
// silences, at the moment now.
namespace DisplaySummary {

Health effectiveHealth(const SourceResult &result, const SilenceStore &silence,
                       const QDateTime &now);
// Rows of the sources that are not silenced, by name in the user's locale, ignoring case.
// Whether a source's only trouble is planned work: every component it is troubled by is
// under maintenance, or, with no components, it is degraded with no incident but a
// maintenance window in progress.
bool onlyMaintenance(const SourceResult &result, const SilenceStore &silence, const QDateTime &now);

QList<DisplayProvider> providers(const QList<SourceResult> &results, const SilenceStore &silence,
                                 const QDateTime &now);
Health overallHealth(const QList<SourceResult> &results, const QList<DisplayProvider> &rows);
QString summaryText(const QList<SourceResult> &results, const QList<DisplayProvider> &rows);
// The problems of one health (degraded or down) the badge counts.
int issueCount(const QList<DisplayProvider> &rows, Health health, const SilenceStore &silence,
               const QDateTime &now);
QList<SilencedItem> silencedItems(const QList<SourceResult> &results, const SilenceStore &silence,
                                  const QDateTime &now);

} // namespace DisplaySummary

} // namespace lanternic
