#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/readerkit.h"

namespace lanternic::PlatformReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;
using namespace JsonValues;

std::optional<SourceResult> cachet(const JSONSource &source, const JsonDocument &document)
{
    const JsonArray data = document.object().value("data"_L1).toArray();
    if (data.isEmpty())
        return std::nullopt;
    SourceResult result = start(source);
    for (const JsonValue &value : data) {
        const JsonObject item = value.toObject();
        const JsonObject attributes = item.value("attributes"_L1).toObject();
        const JsonValue value3 = attributes.value("status"_L1).toObject().value("value"_L1);
        const bool version2 = item.contains("name"_L1) && item.contains("status"_L1);
        const bool version3 = attributes.contains("name"_L1) && !value3.isUndefined();
        if (!item.contains("id"_L1) || (!version2 && !version3))
            return std::nullopt;
        if (const JsonValue enabled = item.value("enabled"_L1);
            enabled.isBool() && !enabled.toBool())
            continue;
        const JsonValue status = version2 ? item.value("status"_L1) : value3;
        const int code = status.isString() ? status.toString().toInt() : status.toInt();
        const Health health = code == 1                             ? Health::operational
                              : code == 2 || code == 3 || code == 5 ? Health::degraded
                              : code == 4                           ? Health::down
                                                                    : Health::unknown;
        const QString name = text(version2 ? item.value("name"_L1) : attributes.value("name"_L1));
        const QString word = version2
                                 ? text(item.value("status_name"_L1))
                                 : text(attributes.value("status"_L1).toObject().value("human"_L1));
        addComponent(result, text(item.value("id"_L1)), name, health,
                     word.isEmpty() ? QString::number(code) : word);
    }
    return settle(std::move(result), Health::operational);
}

} // namespace lanternic::PlatformReaders
