#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/readerkit.h"

namespace lanternic::PlatformReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;
using namespace JsonValues;

namespace {

Health statusIoHealth(const JsonValue &code)
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

std::optional<SourceResult> statusIo(const JSONSource &source, const JsonDocument &document)
{
    const JsonObject root = document.object().value("result"_L1).toObject();
    const JsonValue overall = root.value("status_overall"_L1).toObject().value("status_code"_L1);
    if (!overall.isDouble())
        return std::nullopt;
    SourceResult result = start(source);
    for (const JsonValue &value : root.value("status"_L1).toArray()) {
        const JsonObject entry = value.toObject();
        addComponent(result, text(entry.value("id"_L1)), text(entry.value("name"_L1)),
                     statusIoHealth(entry.value("status_code"_L1)), text(entry.value("status"_L1)));
    }
    for (const JsonValue &value : root.value("incidents"_L1).toArray()) {
        const JsonObject entry = value.toObject();
        Incident incident;
        incident.id = text(entry.value(entry.contains("_id"_L1) ? "_id"_L1 : "id"_L1));
        incident.name = text(entry.value("name"_L1));
        incident.stage = text(entry.value(entry.contains("state"_L1) ? "state"_L1 : "status"_L1));
        incident.url = link(entry.value(entry.contains("url"_L1) ? "url"_L1 : "link"_L1));
        if (!incident.name.isEmpty())
            result.incidents.append(incident);
    }
    const JsonObject maintenance = root.value("maintenance"_L1).toObject();
    for (const auto &[list, status] :
         {std::pair{"active"_L1, u"in_progress"_s}, std::pair{"upcoming"_L1, u"scheduled"_s}}) {
        for (const JsonValue &value : maintenance.value(list).toArray()) {
            const JsonObject entry = value.toObject();
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

} // namespace lanternic::PlatformReaders
