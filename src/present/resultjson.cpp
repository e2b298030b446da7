#include "present/resultjson.h"

#include <QJsonArray>

namespace lanternic {

using namespace Qt::StringLiterals;

QString isoTimestamp(const QDateTime &time)
{
    return time.toUTC().toString(Qt::ISODate);
}

namespace {

QJsonValue timeOrNull(const QDateTime &time)
{
    return time.isValid() ? QJsonValue(isoTimestamp(time)) : QJsonValue();
}

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

} // namespace

QJsonValue urlOrNull(const std::optional<QUrl> &url)
{
    return url ? QJsonValue(url->toString(QUrl::FullyEncoded)) : QJsonValue();
}

QJsonValue urlOrNull(const std::optional<WebLink> &link)
{
    return urlOrNull(urlOf(link));
}

QJsonObject incidentToJson(const Incident &incident, const QString &id, const QString &name)
{
    return {{u"id"_s, id},
            {u"name"_s, name},
            {u"status"_s, incident.stage},
            {u"impact"_s, textOrNull(incident.impact)},
            {u"url"_s, urlOrNull(incident.url)},
            {u"startedAt"_s, timeOrNull(incident.startedAt)},
            {u"updatedAt"_s, timeOrNull(incident.updatedAt)},
            {u"update"_s, textOrNull(incident.update)}};
}

QJsonObject maintenanceToJson(const Maintenance &window, const QString &id, const QString &name)
{
    return {{u"id"_s, id},
            {u"name"_s, name},
            {u"status"_s, window.status},
            {u"startsAt"_s, timeOrNull(window.startsAt)},
            {u"endsAt"_s, timeOrNull(window.endsAt)},
            {u"url"_s, urlOrNull(window.url)}};
}

QJsonObject resultToJson(const SourceResult &result)
{
    QJsonArray incidents;
    for (const Incident &incident : result.incidents)
        incidents.append(incidentToJson(incident, incident.id, incident.name));
    QJsonArray maintenances;
    for (const Maintenance &window : result.maintenances)
        maintenances.append(maintenanceToJson(window, window.id, window.name));
    QJsonArray components;
    for (const ComponentStatus &component : result.components) {
        components.append(QJsonObject{{u"id"_s, component.id.toString()},
                                      {u"name"_s, component.name},
                                      {u"health"_s, rawValue(component.health)},
                                      {u"status"_s, component.status}});
    }
    return QJsonObject{
        {u"id"_s, result.id},
        {u"name"_s, result.name},
        {u"health"_s, rawValue(result.health)},
        {u"detail"_s, result.detail},
        {u"url"_s, result.url ? QJsonValue(result.url->toString()) : QJsonValue()},
        {u"checkedAt"_s, isoTimestamp(result.checkedAt)},
        {u"error"_s, result.error ? QJsonValue(*result.error) : QJsonValue()},
        {u"components"_s, components},
        {u"incidents"_s, incidents},
        {u"maintenances"_s, maintenances},
    };
}

} // namespace lanternic
