#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/readerkit.h"

namespace lanternic::PlatformReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;
using namespace JsonValues;

std::optional<SourceResult> google(const JSONSource &source, const JsonDocument &document)
{
    const JsonArray incidents = document.array();
    if (incidents.isEmpty())
        return std::nullopt;
    for (const JsonValue &value : incidents) {
        const JsonObject incident = value.toObject();
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
    for (const JsonValue &value : incidents) {
        const JsonObject entry = value.toObject();
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
        incident.url = WebLink::parse(dashboard + entry.value("uri"_L1).toString());
        incident.startedAt = instant(entry.value("begin"_L1));
        incident.updatedAt = instant(entry.value("modified"_L1));
        incident.update = text(entry.value("most_recent_update"_L1).toObject().value("text"_L1));
        result.incidents.append(incident);
        for (const JsonValue &product : entry.value("affected_products"_L1).toArray()) {
            worstOf(result, products, text(product.toObject().value("id"_L1)),
                    text(product.toObject().value("title"_L1)), health, impact);
        }
    }
    return settle(std::move(result), Health::operational);
}

} // namespace lanternic::PlatformReaders
