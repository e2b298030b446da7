#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/readerkit.h"

namespace lanternic::PlatformReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;
using namespace JsonValues;

std::optional<SourceResult> gatus(const JSONSource &source, const JsonDocument &document)
{
    const JsonArray endpoints = document.array();
    if (endpoints.isEmpty())
        return std::nullopt;
    SourceResult result = start(source);
    for (const JsonValue &value : endpoints) {
        const JsonObject endpoint = value.toObject();
        if (!endpoint.value("key"_L1).isString() || !endpoint.value("results"_L1).isArray())
            return std::nullopt;
        // Oldest result first.
        const JsonArray results = endpoint.value("results"_L1).toArray();
        const JsonValue success =
            results.isEmpty() ? JsonValue() : results.last().toObject().value("success"_L1);
        const Health health = !success.isBool()  ? Health::unknown
                              : success.toBool() ? Health::operational
                                                 : Health::down;
        addComponent(result, text(endpoint.value("key"_L1)), text(endpoint.value("name"_L1)),
                     health, rawValue(health));
    }
    return settle(std::move(result), Health::operational);
}

} // namespace lanternic::PlatformReaders
