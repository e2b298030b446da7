#include "sources/readers/statuspage.h"

#include "model/jsonsource.h"
#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/newsreader.h"

#include <QCoreApplication>
#include <QHash>

namespace lanternic::StatuspageSource {

using namespace Qt::StringLiterals;

std::optional<Summary> decode(const JsonDocument &document)
{
    JsonDecoder d(KeyStyle::fromSnakeCase);
    Summary summary;
    const JsonObject root = d.root(document);
    const JsonObject status = d.object(root, "status"_L1);
    summary.status.indicator = d.string(status, "indicator"_L1);
    summary.status.description = d.optionalString(status, "description"_L1);
    if (auto components = d.optionalArray(root, "components"_L1)) {
        summary.components.emplace();
        summary.components->reserve(components->size());
        for (const JsonValue &value : *components) {
            const JsonObject object = d.element(value, "components"_L1);
            Summary::Component component;
            component.id = d.utf8(object, "id"_L1);
            component.name = d.string(object, "name"_L1);
            component.status = d.utf8(object, "status"_L1);
            component.group = d.optionalBool(object, "group"_L1);
            component.groupId = d.optionalUtf8(object, "groupId"_L1);
            if (!d.ok())
                break;
            summary.components->append(std::move(component));
        }
    }
    if (auto page = d.optionalObject(root, "page"_L1))
        summary.page = Summary::Page{d.optionalString(*page, "url"_L1)};
    if (!d.ok())
        return std::nullopt;
    return summary;
}

Health indicatorHealth(const QString &indicator)
{
    if (indicator == "none"_L1)
        return Health::operational;
    if (indicator == "minor"_L1 || indicator == "maintenance"_L1)
        return Health::degraded;
    if (indicator == "major"_L1 || indicator == "critical"_L1)
        return Health::down;
    return Health::unknown;
}

std::optional<SourceResult> parse(const JSONSource &source, const JsonDocument &document)
{
    const std::optional<Summary> decoded = decode(document);
    if (!decoded)
        return std::nullopt;
    const Summary &summary = *decoded;
    const auto &includeGroups = source.includeGroups;

    SourceResult result;
    result.id = source.id;
    result.name = source.name;
    result.url = pageAddress(source.homeURL, summary.page ? summary.page->url : std::nullopt);

    const QList<Summary::Component> all = summary.components.value_or(QList<Summary::Component>());
    QHash<QByteArrayView, QString> groupNames;
    result.components.reserve(all.size());
    if (includeGroups) {
        for (const Summary::Component &component : all) {
            if (component.group.value_or(false))
                groupNames.insert(component.id, component.name);
        }
    }
    const ComponentIds ids(source.id);
    for (const Summary::Component &component : all) {
        if (component.group.value_or(false))
            continue;
        if (includeGroups) {
            if (!component.groupId)
                continue;
            auto group = groupNames.constFind(*component.groupId);
            if (group == groupNames.constEnd() || !includeGroups->contains(*group))
                continue;
        }
        const QString status = sharedFeedWordFromUtf8(component.status);
        result.components.append({ids(component.id), component.name,
                                  componentHealth(status, source.treatAsOperational), status});
    }
    SourceResult::keepFirstOfEachId(result.components);
    const WebLink page = *result.url;
    result.incidents = NewsReader::statuspageIncidents(document.object(), page);
    result.maintenances = NewsReader::statuspageMaintenances(document.object(), page);

    if (all.isEmpty()) {
        result.health = indicatorHealth(summary.status.indicator);
        result.detail = summary.status.description.value_or(summary.status.indicator);
    } else {
        std::tie(result.health, result.detail) = SourceResult::summarize(
            result.components, QCoreApplication::translate("Sources", "All Systems Operational"));
    }
    result.checkedAt = QDateTime::currentDateTimeUtc();
    return result;
}

} // namespace lanternic::StatuspageSource
