#include "present/statuspagesummary.h"

#include "model/feedtext.h"
#include "present/resultjson.h"
#include "store/lanternicstore.h"

#include <QJsonArray>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

QString statusWord(Health health, bool maintenance)
{
    if (maintenance && health != Health::operational)
        return u"under_maintenance"_s;
    switch (health) {
    case Health::operational:
        return u"operational"_s;
    case Health::down:
        return u"major_outage"_s;
    case Health::degraded:
        return u"degraded_performance"_s;
    case Health::unknown:
        break;
    }
    return u"unknown"_s;
}

QString indicator(Health health)
{
    switch (health) {
    case Health::operational:
        return u"none"_s;
    case Health::degraded:
        return u"minor"_s;
    case Health::down:
        return u"major"_s;
    case Health::unknown:
        break;
    }
    return u"unknown"_s;
}

// With milliseconds, as Statuspage writes its times.
QJsonValue instant(const QDateTime &time)
{
    return time.isValid() ? QJsonValue(time.toUTC().toString(Qt::ISODateWithMs)) : QJsonValue();
}

QJsonObject component(const QString &id, const QString &name, const QString &status,
                      const QDateTime &updated)
{
    return {{u"id"_s, FeedText::clean(id)},
            {u"name"_s, name},
            {u"status"_s, status},
            {u"group"_s, false},
            {u"group_id"_s, QJsonValue()},
            {u"only_show_if_degraded"_s, false},
            {u"updated_at"_s, instant(updated)}};
}

QJsonArray components(const LanternicStore &store)
{
    QJsonArray out;
    for (const DisplayProvider &row : store.providers()) {
        const QString source = FeedText::clean(row.result.name);
        out.append(component(row.result.id, source, statusWord(row.health, row.maintenance),
                             row.result.checkedAt));
        for (const ComponentStatus &affected : row.result.affectedComponents()) {
            out.append(component(affected.id.toString(),
                                 source + u" \u00b7 "_s + FeedText::clean(affected.name),
                                 statusWord(affected.health, isMaintenanceStatus(affected.status)),
                                 row.result.checkedAt));
        }
    }
    return out;
}

QJsonArray incidents(const LanternicStore &store)
{
    QJsonArray out;
    for (const SourceResult &result : store.results()) {
        for (const Incident &incident : result.incidents) {
            const QJsonArray updates{
                QJsonObject{{u"body"_s, FeedText::clean(incident.update, 1000)},
                            {u"status"_s, incident.stage},
                            {u"updated_at"_s, instant(incident.updatedAt)}}};
            out.append(QJsonObject{
                {u"id"_s, FeedText::clean(result.id + u"::"_s + incident.id)},
                {u"name"_s,
                 FeedText::clean(result.name) + u": "_s + FeedText::clean(incident.name)},
                {u"status"_s, FeedText::clean(incident.stage, 40)},
                {u"impact"_s,
                 incident.impact.isEmpty() ? u"none"_s : FeedText::clean(incident.impact, 40)},
                {u"shortlink"_s, urlOrNull(incident.url)},
                {u"started_at"_s, instant(incident.startedAt)},
                {u"created_at"_s, instant(incident.startedAt)},
                {u"updated_at"_s, instant(incident.updatedAt)},
                {u"incident_updates"_s, updates}});
        }
    }
    return out;
}

QJsonArray maintenances(const LanternicStore &store)
{
    QJsonArray out;
    for (const SourceResult &result : store.results()) {
        for (const Maintenance &window : result.maintenances) {
            out.append(QJsonObject{
                {u"id"_s, FeedText::clean(result.id + u"::"_s + window.id)},
                {u"name"_s, FeedText::clean(result.name) + u": "_s + FeedText::clean(window.name)},
                {u"status"_s, FeedText::clean(window.status, 40)},
                {u"shortlink"_s, urlOrNull(window.url)},
                {u"scheduled_for"_s, instant(window.startsAt)},
                {u"scheduled_until"_s, instant(window.endsAt)}});
        }
    }
    return out;
}

} // namespace

QJsonObject statuspageSummary(const LanternicStore &store, const QString &name,
                              const std::optional<QUrl> &url)
{
    QJsonObject page{{u"id"_s, u"lanternic"_s},
                     {u"name"_s, FeedText::clean(name)},
                     {u"url"_s, urlOrNull(url)},
                     {u"time_zone"_s, u"Etc/UTC"_s},
                     {u"updated_at"_s, instant(store.lastChecked().value_or(QDateTime()))}};
    return {{u"page"_s, page},
            {u"components"_s, components(store)},
            {u"incidents"_s, incidents(store)},
            {u"scheduled_maintenances"_s, maintenances(store)},
            {u"status"_s, QJsonObject{{u"indicator"_s, indicator(store.overallHealth())},
                                      {u"description"_s, FeedText::clean(store.summaryText())}}}};
}

} // namespace lanternic
