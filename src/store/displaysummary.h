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

    bool operator==(const DisplayProvider &) const = default;
};

// What the user sees, derived on demand from the results (in configured order) and the
// silences, at the moment now.
namespace DisplaySummary {

Health effectiveHealth(const SourceResult &result, const SilenceStore &silence,
                       const QDateTime &now);
// Rows of the sources that are not silenced, by name in the user's locale, ignoring case.
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
