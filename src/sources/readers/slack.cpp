#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/readerkit.h"

namespace lanternic::PlatformReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;
using namespace JsonValues;

std::optional<SourceResult> slack(const JSONSource &source, const JsonDocument &document)
{
    const JsonObject root = document.object();
    if (!root.value("status"_L1).isString() || !root.value("active_incidents"_L1).isArray())
        return std::nullopt;
    SourceResult result = start(source);
    Health page = Health::operational;
    QHash<QString, qsizetype> services;
    for (const JsonValue &value : root.value("active_incidents"_L1).toArray()) {
        const JsonObject entry = value.toObject();
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
        for (const JsonValue &note : entry.value("notes"_L1).toArray()) {
            const QDateTime when = instant(note.toObject().value("date_created"_L1));
            if (incident.update.isEmpty() || (when.isValid() && when > newest)) {
                incident.update = text(note.toObject().value("body"_L1));
                newest = when;
            }
        }
        result.incidents.append(incident);
        for (const JsonValue &service : entry.value("services"_L1).toArray()) {
            worstOf(result, services, text(service), text(service), health, type);
        }
    }
    return settle(std::move(result), page);
}

} // namespace lanternic::PlatformReaders
