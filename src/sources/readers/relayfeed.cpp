#include "sources/readers/relayfeed.h"

#include "model/jsonsource.h"
#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/newsreader.h"

namespace lanternic::RelayFeedSource {

using namespace Qt::StringLiterals;

namespace {

std::optional<Document> decode(const JsonDocument &document)
{
    JsonDecoder d(KeyStyle::exact);
    const JsonObject root = d.root(document);
    Document feed;
    feed.schema = d.string(root, "schema"_L1);
    feed.name = d.optionalString(root, "name"_L1);
    feed.health = d.optionalString(root, "health"_L1);
    feed.detail = d.optionalString(root, "detail"_L1);
    feed.url = d.optionalString(root, "url"_L1);
    if (auto components = d.optionalArray(root, "components"_L1)) {
        feed.components.emplace();
        for (const JsonValue &value : *components) {
            const JsonObject object = d.element(value, "components"_L1);
            feed.components->append({d.string(object, "id"_L1), d.string(object, "name"_L1),
                                     d.string(object, "status"_L1),
                                     d.optionalString(object, "label"_L1)});
        }
    }
    if (!d.ok())
        return std::nullopt;
    return feed;
}

} // namespace

std::optional<SourceResult> parse(const JSONSource &source, const JsonDocument &document)
{
    // The schema is required, so most foreign documents stop at the first lookup.
    if (document.object().value("schema"_L1) != "lanternic.v1"_L1)
        return std::nullopt;
    const std::optional<Document> feed = decode(document);
    if (!feed)
        return std::nullopt;

    SourceResult result;
    result.id = source.id;
    result.name = feed->name.value_or(source.name);
    for (const Document::Component &component :
         feed->components.value_or(QList<Document::Component>())) {
        const Health health =
            healthFromRawValue(component.status).value_or(componentHealth(component.status));
        result.components.append({ComponentId(source.id, component.id), component.name, health,
                                  component.label.value_or(component.status)});
    }
    SourceResult::keepFirstOfEachId(result.components);
    // The watchers it came through; a few, as long as ids are, are enough to find a loop.
    for (const JsonValue &watcher : document.object().value("via"_L1).toArray()) {
        if (watcher.isString() && result.relayedVia.size() < maximumRelayHops)
            result.relayedVia.append(watcher.toString().left(64));
    }
    result.incidents = NewsReader::relayIncidents(document.object());
    result.maintenances = NewsReader::relayMaintenances(document.object());
    if (result.components.isEmpty()) {
        result.health =
            healthFromRawValue(feed->health.value_or(QString())).value_or(Health::unknown);
        result.detail = feed->detail.value_or(label(result.health));
    } else {
        std::tie(result.health, result.detail) =
            SourceResult::summarize(result.components, label(Health::operational));
        if (feed->detail)
            result.detail = *feed->detail;
    }
    result.url = pageAddress(source.homeURL, feed->url);
    result.checkedAt = QDateTime::currentDateTimeUtc();
    return result;
}

} // namespace lanternic::RelayFeedSource
