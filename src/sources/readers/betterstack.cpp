#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/readerkit.h"

namespace lanternic::PlatformReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;
using namespace JsonValues;

std::optional<SourceResult> betterStack(const JSONSource &source, const JsonDocument &document)
{
    const JsonObject data = document.object().value("data"_L1).toObject();
    const JsonObject attributes = data.value("attributes"_L1).toObject();
    if (data.value("type"_L1) != "status_page"_L1 ||
        !attributes.value("aggregate_state"_L1).isString())
        return std::nullopt;
    SourceResult result = start(source);
    for (const JsonValue &value : document.object().value("included"_L1).toArray()) {
        const JsonObject item = value.toObject();
        const JsonObject resource = item.value("attributes"_L1).toObject();
        const QString status = resource.value("status"_L1).toString();
        if (item.value("type"_L1) != "status_page_resource"_L1 || status == "not_monitored"_L1)
            continue;
        addComponent(result, text(item.value("id"_L1)), text(resource.value("public_name"_L1)),
                     wordHealth(status), status);
    }
    return settle(std::move(result), wordHealth(attributes.value("aggregate_state"_L1).toString()));
}

} // namespace lanternic::PlatformReaders
