#include "store/displaysummary.h"

#include "store/timetext.h"

#include <QCollator>
#include <QCoreApplication>
#include <algorithm>

namespace lanternic::DisplaySummary {

using namespace Qt::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(DisplaySummary)
};

QList<ComponentStatus> unsilencedAffected(const SourceResult &result, const SilenceStore &silence,
                                          const QDateTime &now)
{
    QList<ComponentStatus> affected;
    for (const ComponentStatus &component : result.components) {
        if (component.health != Health::operational && !silence.isSilenced(component.id, now))
            affected.append(component);
    }
    return affected;
}

Health effectiveHealth(const SourceResult &result, const QList<ComponentStatus> &unsilenced)
{
    if (unsilenced.isEmpty()) {
        const bool anyAffected =
            std::any_of(result.components.begin(), result.components.end(),
                        [](const ComponentStatus &c) { return c.health != Health::operational; });
        return anyAffected ? Health::operational : result.health;
    }
    QList<Health> healths;
    for (const ComponentStatus &component : unsilenced)
        healths.append(component.health);
    return *worstHealth(healths);
}

bool onlyMaintenance(const SourceResult &result, const QList<ComponentStatus> &unsilenced,
                     Health health, const QDateTime &now)
{
    if (result.error || health == Health::operational || health == Health::unknown)
        return false;
    if (!unsilenced.isEmpty())
        return std::all_of(unsilenced.begin(), unsilenced.end(),
                           [](const ComponentStatus &c) { return isMaintenanceStatus(c.status); });
    return result.components.isEmpty() && health == Health::degraded &&
           result.incidents.isEmpty() &&
           std::any_of(result.maintenances.begin(), result.maintenances.end(),
                       [&now](const Maintenance &window) { return window.isInProgress(now); });
}

// "Under maintenance", and until when where the window in progress says.
QString maintenanceDetail(const SourceResult &result, const QDateTime &now)
{
    QDateTime end;
    for (const Maintenance &window : result.maintenances) {
        if (window.isInProgress(now) && window.endsAt.isValid() &&
            (!end.isValid() || window.endsAt < end))
            end = window.endsAt;
    }
    if (!end.isValid())
        return Text::tr("Under maintenance");
    return Text::tr("Under maintenance until %1").arg(TimeText::momentText(end, now));
}

// Stable, so equal names keep their configured order.
template<typename T, typename Name> void sortByLocalizedName(QList<T> &items, Name name)
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(items.begin(), items.end(), [&](const T &a, const T &b) {
        return collator.compare(name(a), name(b)) < 0;
    });
}

} // namespace

Health effectiveHealth(const SourceResult &result, const SilenceStore &silence,
                       const QDateTime &now)
{
    return effectiveHealth(result, unsilencedAffected(result, silence, now));
}

bool onlyMaintenance(const SourceResult &result, const SilenceStore &silence, const QDateTime &now)
{
    const QList<ComponentStatus> unsilenced = unsilencedAffected(result, silence, now);
    return onlyMaintenance(result, unsilenced, effectiveHealth(result, unsilenced), now);
}

QList<DisplayProvider> providers(const QList<SourceResult> &results, const SilenceStore &silence,
                                 const QDateTime &now)
{
    QList<DisplayProvider> rows;
    for (const SourceResult &result : results) {
        if (silence.isSilenced(result.id, now))
            continue;
        const QList<ComponentStatus> unsilenced = unsilencedAffected(result, silence, now);
        const Health health = effectiveHealth(result, unsilenced);
        QString detail;
        if (result.error)
            detail = result.detail;
        else if (!unsilenced.isEmpty())
            detail = SourceResult::affectedDetail(unsilenced.first(), unsilenced.size(), health);
        else
            detail = health == Health::operational ? label(Health::operational) : result.detail;
        const bool maintenance = onlyMaintenance(result, unsilenced, health, now);
        if (maintenance)
            detail = maintenanceDetail(result, now);
        rows.append({result, health, detail, maintenance});
    }
    sortByLocalizedName(rows, [](const DisplayProvider &row) { return row.result.name; });
    return rows;
}

Health overallHealth(const QList<SourceResult> &results, const QList<DisplayProvider> &rows)
{
    if (results.isEmpty())
        return Health::unknown;
    QList<Health> healths;
    for (const DisplayProvider &row : rows)
        healths.append(row.health);
    return worstHealth(healths).value_or(Health::operational);
}

QString summaryText(const QList<SourceResult> &results, const QList<DisplayProvider> &rows)
{
    if (results.isEmpty())
        return Text::tr("No sources configured");
    QList<Health> healths;
    for (const DisplayProvider &row : rows)
        healths.append(row.health);
    QStringList parts;
    for (const auto &[health, text] :
         {std::pair{Health::down, QT_TRANSLATE_N_NOOP("DisplaySummary", "%n down")},
          std::pair{Health::degraded, QT_TRANSLATE_N_NOOP("DisplaySummary", "%n degraded")},
          std::pair{Health::unknown, QT_TRANSLATE_N_NOOP("DisplaySummary", "%n unknown")}}) {
        const auto count = std::count(healths.begin(), healths.end(), health);
        if (count > 0)
            parts.append(Text::tr(text, nullptr, int(count)));
    }
    return parts.isEmpty() ? Text::tr("All systems operational") : parts.join(Text::tr(", "));
}

int issueCount(const QList<DisplayProvider> &rows, Health health, const SilenceStore &silence,
               const QDateTime &now)
{
    if (health != Health::degraded && health != Health::down)
        return 0;
    int count = 0;
    for (const DisplayProvider &row : rows) {
        const QList<ComponentStatus> unsilenced = unsilencedAffected(row.result, silence, now);
        const auto matching = std::count_if(unsilenced.begin(), unsilenced.end(),
                                            [&](const auto &c) { return c.health == health; });
        count += matching > 0 ? int(matching) : int(row.health == health);
    }
    return count;
}

QList<SilencedItem> silencedItems(const QList<SourceResult> &results, const SilenceStore &silence,
                                  const QDateTime &now)
{
    QList<SilencedItem> items;
    for (const SourceResult &result : results) {
        if (silence.isSilenced(result.id, now)) {
            items.append({result.id, result.name, silence.entries().value(result.id)});
            continue;
        }
        for (const ComponentStatus &component : result.components) {
            if (silence.isSilenced(component.id, now)) {
                const QString id = component.id.toString();
                items.append({id, Text::tr("%1 \u00b7 %2").arg(result.name, component.name),
                              silence.entries().value(id)});
            }
        }
    }
    sortByLocalizedName(items, [](const SilencedItem &item) { return item.title; });
    return items;
}

} // namespace lanternic::DisplaySummary
