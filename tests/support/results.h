#pragma once

// Results as the readers make them, for the tests of what is shown of them.

#include "model/sourceresult.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

namespace results {

using namespace Qt::StringLiterals;
using lanternic::ComponentStatus;
using lanternic::Health;
using lanternic::Incident;
using lanternic::SourceResult;

inline const QDateTime now = QDateTime::fromString(u"2026-11-16T17:00:00Z"_s, Qt::ISODate);

inline ComponentStatus component(const QString &sourceId, const QString &key, Health health)
{
    return {sourceId + u"::"_s + key, key.toUpper(), health, rawValue(health)};
}

inline SourceResult result(const QString &id, Health health, QList<ComponentStatus> components = {},
                           std::optional<QString> error = std::nullopt)
{
    SourceResult r;
    r.id = id;
    r.name = id;
    r.health = health;
    r.detail = u"reader detail"_s;
    r.error = error;
    r.components = std::move(components);
    r.checkedAt = now;
    return r;
}

inline SourceResult failed(const QString &id)
{
    return result(id, Health::unknown, {}, u"Could not reach status page"_s);
}

inline SourceResult withIncident(SourceResult r, const QString &id, const QString &name)
{
    Incident incident;
    incident.id = id;
    incident.name = name;
    incident.stage = u"investigating"_s;
    r.incidents.append(incident);
    return r;
}

} // namespace results
