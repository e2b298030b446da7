#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/readerkit.h"

namespace lanternic::PlatformReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;
using namespace JsonValues;

std::optional<SourceResult> openStatus(const JSONSource &source, const JsonDocument &document)
{
    static const QStringList words{u"operational"_s,       u"degraded_performance"_s,
                                   u"partial_outage"_s,    u"major_outage"_s,
                                   u"under_maintenance"_s, u"unknown"_s,
                                   u"incident"_s};
    const JsonObject root = document.object();
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
