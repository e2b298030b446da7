#include "present/statuspagesummary.h"

#include "model/feedtext.h"
#include "present/jsonwriter.h"
#include "present/resultjson.h"
#include "store/lanternicstore.h"

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
void writeInstant(JsonWriter &out, const QDateTime &time)
{
    writeTime(out, time, Qt::ISODateWithMs);
}

// Members in the order a QJsonObject keeps them, here and below: sorted by name.
void writeComponent(JsonWriter &out, const QString &id, const QString &name, const QString &status,
                    const QDateTime &updated)
{
    out.beginObject();
    out.key("group"_L1).boolean(false);
    out.key("group_id"_L1).null();
    out.key("id"_L1).value(FeedText::clean(id));
    out.key("name"_L1).value(name);
    out.key("only_show_if_degraded"_L1).boolean(false);
    out.key("status"_L1).value(status);
    writeInstant(out.key("updated_at"_L1), updated);
    out.endObject();
}

void writeComponents(JsonWriter &out, const QList<DisplayProvider> &rows)
{
    out.beginArray();
    for (const DisplayProvider &row : rows) {
        const QString source = FeedText::clean(row.result.name);
        writeComponent(out, row.result.id, source, statusWord(row.health, row.maintenance),
                       row.result.checkedAt);
        for (const ComponentStatus &affected : row.result.affectedComponents()) {
            writeComponent(out, affected.id.toString(),
                           source + u" \u00b7 "_s + FeedText::clean(affected.name),
                           statusWord(affected.health, isMaintenanceStatus(affected.status)),
                           row.result.checkedAt);
        }
    }
    out.endArray();
}

void writeIncidents(JsonWriter &out, const LanternicStore &store)
{
    out.beginArray();
    for (const SourceResult &result : store.results()) {
        for (const Incident &incident : result.incidents) {
            out.beginObject();
            writeInstant(out.key("created_at"_L1), incident.startedAt);
            out.key("id"_L1).value(FeedText::clean(result.id + u"::"_s + incident.id));
            out.key("impact"_L1)
                .value(incident.impact.isEmpty() ? u"none"_s
                                                 : FeedText::clean(incident.impact, 40));
            out.key("incident_updates"_L1).beginArray().beginObject();
            out.key("body"_L1).value(FeedText::clean(incident.update, 1000));
            out.key("status"_L1).value(incident.stage);
            writeInstant(out.key("updated_at"_L1), incident.updatedAt);
            out.endObject().endArray();
            out.key("name"_L1).value(FeedText::clean(result.name) + u": "_s +
                                     FeedText::clean(incident.name));
            writeLink(out.key("shortlink"_L1), incident.url);
            writeInstant(out.key("started_at"_L1), incident.startedAt);
            out.key("status"_L1).value(FeedText::clean(incident.stage, 40));
            writeInstant(out.key("updated_at"_L1), incident.updatedAt);
            out.endObject();
        }
    }
    out.endArray();
}

void writeMaintenances(JsonWriter &out, const LanternicStore &store)
{
    out.beginArray();
    for (const SourceResult &result : store.results()) {
        for (const Maintenance &window : result.maintenances) {
            out.beginObject();
            out.key("id"_L1).value(FeedText::clean(result.id + u"::"_s + window.id));
            out.key("name"_L1).value(FeedText::clean(result.name) + u": "_s +
                                     FeedText::clean(window.name));
            writeInstant(out.key("scheduled_for"_L1), window.startsAt);
            writeInstant(out.key("scheduled_until"_L1), window.endsAt);
            writeLink(out.key("shortlink"_L1), window.url);
            out.key("status"_L1).value(FeedText::clean(window.status, 40));
            out.endObject();
        }
    }
    out.endArray();
}

} // namespace

QByteArray statuspageSummary(const LanternicStore &store, const QString &name,
                             const std::optional<QUrl> &url)
{
    const LanternicStore::Display display = store.display();
    JsonWriter out;
    out.beginObject();
    writeComponents(out.key("components"_L1), display.providers);
    writeIncidents(out.key("incidents"_L1), store);
    out.key("page"_L1).beginObject();
    out.key("id"_L1).value(u"lanternic"_s);
    out.key("name"_L1).value(FeedText::clean(name));
    out.key("time_zone"_L1).value(u"Etc/UTC"_s);
    writeInstant(out.key("updated_at"_L1), store.lastChecked().value_or(QDateTime()));
    if (url)
        out.key("url"_L1).value(url->toString(QUrl::FullyEncoded));
    else
        out.key("url"_L1).null();
    out.endObject();
    writeMaintenances(out.key("scheduled_maintenances"_L1), store);
    out.key("status"_L1).beginObject();
    out.key("description"_L1).value(FeedText::clean(display.summaryText));
    out.key("indicator"_L1).value(indicator(display.overall));
    out.endObject();
    out.endObject();
    return out.take();
}

} // namespace lanternic
