#include "present/resultjson.h"

#include <QJsonArray>

namespace lanternic {

using namespace Qt::StringLiterals;

QString isoTimestamp(const QDateTime &time)
{
    return time.toUTC().toString(Qt::ISODate);
}

QJsonObject resultToJson(const SourceResult &result)
{
    QJsonArray components;
    for (const ComponentStatus &component : result.components) {
        components.append(QJsonObject{{u"id"_s, component.id},
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
    };
}

} // namespace lanternic
