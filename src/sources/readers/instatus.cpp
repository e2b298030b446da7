#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/readerkit.h"

namespace lanternic::PlatformReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;
using namespace JsonValues;

std::optional<SourceResult> instatus(const JSONSource &source, const JsonDocument &document)
{
    const JsonObject root = document.object();
    const JsonValue page = root.value("page"_L1);
    if (!page.toObject().value("status"_L1).isString() ||
        (!root.contains("activeIncidents"_L1) && !root.contains("activeMaintenances"_L1)))
        return std::nullopt;
    SourceResult result = start(source);
    if (auto url = link(page.toObject().value("url"_L1)))
        result.url = url;
    Health worst = Health::operational;
    bool anyIncident = false;
    for (const JsonValue &value : root.value("activeIncidents"_L1).toArray()) {
        const JsonObject entry = value.toObject();
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
    for (const JsonValue &value : root.value("activeMaintenances"_L1).toArray()) {
        const JsonObject entry = value.toObject();
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

} // namespace lanternic::PlatformReaders
