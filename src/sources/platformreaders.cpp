#include "sources/platformreaders.h"

#include "model/urls.h"
#include "sources/jsonsource.h"
#include "sources/newsreader.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>

namespace lanternic::PlatformReaders {

using namespace Qt::StringLiterals;

namespace {

SourceResult start(const JSONSource &source)
{
    SourceResult result;
    result.id = source.id;
    result.name = source.name;
    result.url = source.homeURL;
    return result;
}

// As for every platform: components alone decide when there are any; a document without
// them takes the page's own health, and the first incident's name (else the health's label)
// as its detail.
SourceResult settle(SourceResult result, Health pageHealth)
{
    SourceResult::keepFirstOfEachId(result.components);
    result.incidents = result.incidents.mid(0, NewsReader::maximumEntries);
    result.maintenances = result.maintenances.mid(0, NewsReader::maximumEntries);
    if (!result.components.isEmpty()) {
        std::tie(result.health, result.detail) = SourceResult::summarize(
            result.components, QCoreApplication::translate("Sources", "All Systems Operational"));
    } else {
        result.health = pageHealth;
        result.detail =
            result.incidents.isEmpty() ? label(pageHealth) : result.incidents.first().name;
    }
    return result;
}

// Text of a string, or of a whole number (Cachet writes ids as numbers).
QString text(const QJsonValue &value)
{
    if (value.isDouble()) {
        const double number = value.toDouble();
        const qint64 whole = value.toInteger();
        return number == double(whole) ? QString::number(whole) : QString::number(number);
    }
    return value.toString().left(NewsReader::maximumTextLength);
}

QDateTime instant(const QJsonValue &value)
{
    return NewsReader::parseInstant(value.toString());
}

std::optional<QUrl> link(const QJsonValue &value)
{
    return parseWebUrl(value.toString());
}

void addComponent(SourceResult &result, const QString &key, const QString &name, Health health,
                  const QString &status)
{
    result.components.append({result.id + "::"_L1 + key, name, health, status});
}

// A component named by several incidents is at the worst of them; known maps keys to places.
void worstOf(SourceResult &result, QHash<QString, qsizetype> &known, const QString &key,
             const QString &name, Health health, const QString &status)
{
    if (auto place = known.constFind(key); place != known.constEnd()) {
        ComponentStatus &component = result.components[*place];
        if (severity(health) > severity(component.health)) {
            component.health = health;
            component.status = status;
        }
        return;
    }
    known.insert(key, result.components.size());
    addComponent(result, key, name, health, status);
}

Health worse(Health a, Health b)
{
    return severity(b) > severity(a) ? b : a;
}

// Status words shared by Better Stack and OpenStatus.
Health wordHealth(const QString &word)
{
    if (word == "operational"_L1)
        return Health::operational;
    if (word == "downtime"_L1 || word == "major_outage"_L1)
        return Health::down;
    if (word == "unknown"_L1)
        return Health::unknown;
    return Health::degraded;
}

} // namespace

std::optional<SourceResult> instatus(const JSONSource &source, const QJsonDocument &document)
{
    const QJsonObject root = document.object();
    const QJsonValue page = root.value("page"_L1);
    if (!page.toObject().value("status"_L1).isString() ||
        (!root.contains("activeIncidents"_L1) && !root.contains("activeMaintenances"_L1)))
        return std::nullopt;
    SourceResult result = start(source);
    if (auto url = link(page.toObject().value("url"_L1)))
        result.url = url;
    Health worst = Health::operational;
    bool anyIncident = false;
    for (const QJsonValue &value : root.value("activeIncidents"_L1).toArray()) {
        const QJsonObject entry = value.toObject();
        Incident incident;
        incident.id = text(entry.value("id"_L1));
        incident.name = text(entry.value("name"_L1));
        incident.stage = text(entry.value("status"_L1));
        incident.impact = text(entry.value("impact"_L1));
        incident.url = link(entry.value("url"_L1));
        incident.startedAt = instant(entry.value("started"_L1));
        incident.updatedAt = incident.startedAt;
        result.incidents.append(incident);
        anyIncident = true;
        worst = worse(worst, incident.impact == "MAJOROUTAGE"_L1 ? Health::down : Health::degraded);
    }
    for (const QJsonValue &value : root.value("activeMaintenances"_L1).toArray()) {
        const QJsonObject entry = value.toObject();
        Maintenance window;
        window.id = text(entry.value("id"_L1));
        window.name = text(entry.value("name"_L1));
        window.status = text(entry.value("status"_L1));
        window.startsAt = instant(entry.value("start"_L1));
        // Minutes; beyond a year it is nonsense, and unbounded it would overflow.
        const qint64 minutes = entry.value("duration"_L1).toInteger(-1);
        if (window.startsAt.isValid() && minutes >= 0 && minutes <= 366 * 24 * 60)
            window.endsAt = window.startsAt.addSecs(minutes * 60);
        window.url = link(entry.value("url"_L1));
        result.maintenances.append(window);
    }
    const QString status = page.toObject().value("status"_L1).toString();
    const bool up = status == "UP"_L1 || status == "ALLUP"_L1;
    return settle(std::move(result), up            ? Health::operational
                                     : anyIncident ? worst
                                                   : Health::degraded);
}

std::optional<SourceResult> betterStack(const JSONSource &source, const QJsonDocument &document)
{
    const QJsonObject data = document.object().value("data"_L1).toObject();
    const QJsonObject attributes = data.value("attributes"_L1).toObject();
    if (data.value("type"_L1) != "status_page"_L1 ||
        !attributes.value("aggregate_state"_L1).isString())
        return std::nullopt;
    SourceResult result = start(source);
    for (const QJsonValue &value : document.object().value("included"_L1).toArray()) {
        const QJsonObject item = value.toObject();
        const QJsonObject resource = item.value("attributes"_L1).toObject();
        const QString status = resource.value("status"_L1).toString();
        if (item.value("type"_L1) != "status_page_resource"_L1 || status == "not_monitored"_L1)
            continue;
        addComponent(result, text(item.value("id"_L1)), text(resource.value("public_name"_L1)),
                     wordHealth(status), status);
    }
    return settle(std::move(result), wordHealth(attributes.value("aggregate_state"_L1).toString()));
}

namespace {

Health statusIoHealth(const QJsonValue &code)
{
    switch (code.toInt(-1)) {
    case 100:
        return Health::operational;
    case 200:
    case 300:
    case 400:
        return Health::degraded;
    case 500:
    case 600:
        return Health::down;
    default:
        return Health::unknown;
    }
}

} // namespace

std::optional<SourceResult> statusIo(const JSONSource &source, const QJsonDocument &document)
{
    const QJsonObject root = document.object().value("result"_L1).toObject();
    const QJsonValue overall = root.value("status_overall"_L1).toObject().value("status_code"_L1);
    if (!overall.isDouble())
        return std::nullopt;
    SourceResult result = start(source);
    for (const QJsonValue &value : root.value("status"_L1).toArray()) {
        const QJsonObject entry = value.toObject();
        addComponent(result, text(entry.value("id"_L1)), text(entry.value("name"_L1)),
                     statusIoHealth(entry.value("status_code"_L1)), text(entry.value("status"_L1)));
    }
    for (const QJsonValue &value : root.value("incidents"_L1).toArray()) {
        const QJsonObject entry = value.toObject();
        Incident incident;
        incident.id = text(entry.value(entry.contains("_id"_L1) ? "_id"_L1 : "id"_L1));
        incident.name = text(entry.value("name"_L1));
        incident.stage = text(entry.value(entry.contains("state"_L1) ? "state"_L1 : "status"_L1));
        incident.url = link(entry.value(entry.contains("url"_L1) ? "url"_L1 : "link"_L1));
        if (!incident.name.isEmpty())
            result.incidents.append(incident);
    }
    const QJsonObject maintenance = root.value("maintenance"_L1).toObject();
    for (const auto &[list, status] :
         {std::pair{"active"_L1, u"in_progress"_s}, std::pair{"upcoming"_L1, u"scheduled"_s}}) {
        for (const QJsonValue &value : maintenance.value(list).toArray()) {
            const QJsonObject entry = value.toObject();
            Maintenance window;
            window.id = text(entry.value(entry.contains("_id"_L1) ? "_id"_L1 : "id"_L1));
            window.name = text(entry.value("name"_L1));
            window.status = status;
            window.startsAt = instant(entry.value("datetime_planned_start"_L1));
            window.endsAt = instant(entry.value("datetime_planned_end"_L1));
            window.url = link(entry.value(entry.contains("url"_L1) ? "url"_L1 : "link"_L1));
            if (!window.name.isEmpty())
                result.maintenances.append(window);
        }
    }
    return settle(std::move(result), statusIoHealth(overall));
}

std::optional<SourceResult> cachet(const JSONSource &source, const QJsonDocument &document)
{
    const QJsonArray data = document.object().value("data"_L1).toArray();
    if (data.isEmpty())
        return std::nullopt;
    SourceResult result = start(source);
    for (const QJsonValue &value : data) {
        const QJsonObject item = value.toObject();
        const QJsonObject attributes = item.value("attributes"_L1).toObject();
        const QJsonValue value3 = attributes.value("status"_L1).toObject().value("value"_L1);
        const bool version2 = item.contains("name"_L1) && item.contains("status"_L1);
        const bool version3 = attributes.contains("name"_L1) && !value3.isUndefined();
        if (!item.contains("id"_L1) || (!version2 && !version3))
            return std::nullopt;
        if (item.value("enabled"_L1) == QJsonValue(false))
            continue;
        const QJsonValue status = version2 ? item.value("status"_L1) : value3;
        const int code = status.isString() ? status.toString().toInt() : status.toInt();
        const Health health = code == 1                             ? Health::operational
                              : code == 2 || code == 3 || code == 5 ? Health::degraded
                              : code == 4                           ? Health::down
                                                                    : Health::unknown;
        const QString name = text(version2 ? item.value("name"_L1) : attributes.value("name"_L1));
        const QString word = version2
                                 ? text(item.value("status_name"_L1))
                                 : text(attributes.value("status"_L1).toObject().value("human"_L1));
        addComponent(result, text(item.value("id"_L1)), name, health,
                     word.isEmpty() ? QString::number(code) : word);
    }
    return settle(std::move(result), Health::operational);
}

std::optional<SourceResult> gatus(const JSONSource &source, const QJsonDocument &document)
{
    const QJsonArray endpoints = document.array();
    if (endpoints.isEmpty())
        return std::nullopt;
    SourceResult result = start(source);
    for (const QJsonValue &value : endpoints) {
        const QJsonObject endpoint = value.toObject();
        if (!endpoint.value("key"_L1).isString() || !endpoint.value("results"_L1).isArray())
            return std::nullopt;
        // Oldest result first.
        const QJsonArray results = endpoint.value("results"_L1).toArray();
        const QJsonValue success =
            results.isEmpty() ? QJsonValue() : results.last().toObject().value("success"_L1);
        const Health health = !success.isBool()  ? Health::unknown
                              : success.toBool() ? Health::operational
                                                 : Health::down;
        addComponent(result, text(endpoint.value("key"_L1)), text(endpoint.value("name"_L1)),
                     health, rawValue(health));
    }
    return settle(std::move(result), Health::operational);
}

std::optional<SourceResult> google(const JSONSource &source, const QJsonDocument &document)
{
    const QJsonArray incidents = document.array();
    if (incidents.isEmpty())
        return std::nullopt;
    for (const QJsonValue &value : incidents) {
        const QJsonObject incident = value.toObject();
        if (!incident.contains("id"_L1) || !incident.contains("begin"_L1) ||
            !incident.contains("status_impact"_L1))
            return std::nullopt;
    }
    SourceResult result = start(source);
    // Each feed links to its own dashboard.
    const QString dashboard = source.url.host() == "www.google.com"_L1
                                  ? u"https://www.google.com/appsstatus/dashboard/"_s
                                  : u"https://status.cloud.google.com/"_s;
    QHash<QString, qsizetype> products;
    for (const QJsonValue &value : incidents) {
        const QJsonObject entry = value.toObject();
        if (!entry.value("end"_L1).isNull() && !entry.value("end"_L1).isUndefined())
            continue;
        const QString impact = text(entry.value("status_impact"_L1));
        const Health health = impact == "SERVICE_OUTAGE"_L1       ? Health::down
                              : impact == "SERVICE_DISRUPTION"_L1 ? Health::degraded
                                                                  : Health::operational;
        Incident incident;
        incident.id = text(entry.value("id"_L1));
        incident.name = text(entry.value("external_desc"_L1));
        incident.stage = impact;
        incident.impact = text(entry.value("severity"_L1));
        incident.url = parseWebUrl(dashboard + entry.value("uri"_L1).toString());
        incident.startedAt = instant(entry.value("begin"_L1));
        incident.updatedAt = instant(entry.value("modified"_L1));
        incident.update = text(entry.value("most_recent_update"_L1).toObject().value("text"_L1));
        result.incidents.append(incident);
        for (const QJsonValue &product : entry.value("affected_products"_L1).toArray()) {
            worstOf(result, products, text(product.toObject().value("id"_L1)),
                    text(product.toObject().value("title"_L1)), health, impact);
        }
    }
    return settle(std::move(result), Health::operational);
}

std::optional<SourceResult> slack(const JSONSource &source, const QJsonDocument &document)
{
    const QJsonObject root = document.object();
    if (!root.value("status"_L1).isString() || !root.value("active_incidents"_L1).isArray())
        return std::nullopt;
    SourceResult result = start(source);
    Health page = Health::operational;
    QHash<QString, qsizetype> services;
    for (const QJsonValue &value : root.value("active_incidents"_L1).toArray()) {
        const QJsonObject entry = value.toObject();
        const QString type = text(entry.value("type"_L1));
        const Health health = type == "outage"_L1   ? Health::down
                              : type == "notice"_L1 ? Health::operational
                                                    : Health::degraded;
        page = worse(page, health);
        Incident incident;
        incident.id = text(entry.value("id"_L1));
        incident.name = text(entry.value("title"_L1));
        incident.stage = text(entry.value("status"_L1));
        incident.url = link(entry.value("url"_L1));
        incident.startedAt = instant(entry.value("date_created"_L1));
        incident.updatedAt = instant(entry.value("date_updated"_L1));
        QDateTime newest;
        for (const QJsonValue &note : entry.value("notes"_L1).toArray()) {
            const QDateTime when = instant(note.toObject().value("date_created"_L1));
            if (incident.update.isEmpty() || (when.isValid() && when > newest)) {
                incident.update = text(note.toObject().value("body"_L1));
                newest = when;
            }
        }
        result.incidents.append(incident);
        for (const QJsonValue &service : entry.value("services"_L1).toArray()) {
            worstOf(result, services, text(service), text(service), health, type);
        }
    }
    return settle(std::move(result), page);
}

std::optional<SourceResult> openStatus(const JSONSource &source, const QJsonDocument &document)
{
    static const QStringList words{u"operational"_s,       u"degraded_performance"_s,
                                   u"partial_outage"_s,    u"major_outage"_s,
                                   u"under_maintenance"_s, u"unknown"_s,
                                   u"incident"_s};
    const QJsonObject root = document.object();
    const QString status = root.value("status"_L1).toString();
    if (!words.contains(status))
        return std::nullopt;
    for (const QLatin1StringView other :
         {"page"_L1, "data"_L1, "result"_L1, "active_incidents"_L1}) {
        if (root.contains(other))
            return std::nullopt;
    }
    return settle(start(source), wordHealth(status));
}

} // namespace lanternic::PlatformReaders
