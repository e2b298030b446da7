#include "sources/readers/incidentio.h"

#include "model/jsonsource.h"
#include "model/urls.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/newsreader.h"

#include <QCoreApplication>
#include <QHash>

namespace lanternic::IncidentIOSource {

using namespace Qt::StringLiterals;

namespace {

// Every field of the widget document is optional, so each decoder reads what is there.
class WidgetDecoder {
public:
    bool ok() const { return d.ok(); }

    Component component(const JsonValue &value, QLatin1StringView arrayField)
    {
        return component(d.element(value, arrayField));
    }

    Component component(const JsonObject &object)
    {
        return {d.optionalString(object, "componentId"_L1), d.optionalString(object, "id"_L1),
                d.optionalString(object, "name"_L1), d.optionalBool(object, "hidden"_L1)};
    }

    std::optional<QList<Component>> components(const JsonObject &object)
    {
        return list<Component>(object, "components"_L1, &WidgetDecoder::component);
    }

    Item item(const JsonValue &value, QLatin1StringView arrayField)
    {
        const JsonObject object = d.element(value, arrayField);
        Item item;
        if (auto group = d.optionalObject(object, "group"_L1))
            item.group = Group{d.optionalString(*group, "name"_L1), components(*group)};
        if (auto component = d.optionalObject(object, "component"_L1))
            item.component = this->component(*component);
        return item;
    }

    AffectedRef affectedRef(const JsonValue &value, QLatin1StringView arrayField)
    {
        const JsonObject object = d.element(value, arrayField);
        return {d.optionalString(object, "componentId"_L1), d.optionalString(object, "id"_L1),
                d.optionalString(object, "name"_L1), d.optionalString(object, "status"_L1),
                d.optionalString(object, "currentStatus"_L1)};
    }

    std::optional<QList<AffectedRef>> affectedRefs(const JsonObject &object)
    {
        return list<AffectedRef>(object, "affectedComponents"_L1, &WidgetDecoder::affectedRef);
    }

    Incident incident(const JsonValue &value, QLatin1StringView arrayField)
    {
        const JsonObject object = d.element(value, arrayField);
        return {d.optionalString(object, "name"_L1), affectedRefs(object)};
    }

    Summary summary(const JsonObject &object)
    {
        Summary summary;
        summary.publicUrl = d.optionalString(object, "publicUrl"_L1);
        if (auto structure = d.optionalObject(object, "structure"_L1))
            summary.structure = Structure{list<Item>(*structure, "items"_L1, &WidgetDecoder::item)};
        summary.affectedComponents = affectedRefs(object);
        summary.ongoingIncidents =
            list<Incident>(object, "ongoingIncidents"_L1, &WidgetDecoder::incident);
        return summary;
    }

    JsonDecoder d{KeyStyle::fromSnakeCase};

private:
    template<typename T>
    std::optional<QList<T>> list(const JsonObject &object, QLatin1StringView field,
                                 T (WidgetDecoder::*readElement)(const JsonValue &,
                                                                 QLatin1StringView))
    {
        auto array = d.optionalArray(object, field);
        if (!array)
            return std::nullopt;
        QList<T> elements;
        elements.reserve(array->size());
        for (const JsonValue &value : *array)
            elements.append((this->*readElement)(value, field));
        return elements;
    }
};

std::optional<Summary> decodeSummary(const JsonDocument &document)
{
    WidgetDecoder decoder;
    const JsonObject root = decoder.d.root(document);
    // A summary that is there but does not decode is not read around: its components may be
    // down, and the top level would read as an empty, operational page.
    if (auto summaryObject = decoder.d.optionalObject(root, "summary"_L1)) {
        Summary summary = decoder.summary(*summaryObject);
        if (!decoder.ok())
            return std::nullopt;
        return summary;
    }
    // The document may also be the summary itself, without the wrapper.
    WidgetDecoder topLevel;
    Summary summary = topLevel.summary(topLevel.d.root(document));
    if (!topLevel.ok())
        return std::nullopt;
    return summary;
}

std::optional<QString> keyOf(const std::optional<QString> &componentId,
                             const std::optional<QString> &id)
{
    return componentId ? componentId : id;
}

struct KeyedStatus {
    QString key;
    QString status;
};

// A reference counts only with both a key and a status; the current status wins.
std::optional<KeyedStatus> keyedStatus(const AffectedRef &reference)
{
    const auto key = keyOf(reference.componentId, reference.id);
    const auto status = reference.currentStatus ? reference.currentStatus : reference.status;
    if (!key || !status)
        return std::nullopt;
    return KeyedStatus{*key, *status};
}

int statusSeverity(const QString &status)
{
    if (status == "major_outage"_L1 || status == "full_outage"_L1)
        return 2;
    if (status == "operational"_L1)
        return 0;
    return 1;
}

} // namespace

std::optional<QUrl> widgetURL(const Site &site, const std::optional<QString> &subpage)
{
    return Platforms::below(site, "/proxy/"_L1 + site.host,
                            subpage && !subpage->isEmpty()
                                ? "subpage_slug="_L1 + percentEncodeQuery(*subpage)
                                : QString());
}

bool looksLikeIncidentWidget(const JsonDocument &document)
{
    if (!document.isObject())
        return false;
    const JsonObject root = document.object();
    const JsonValue summary = root.value("summary"_L1);
    if (summary.isObject()) {
        const JsonObject inner = summary.toObject();
        return inner.contains("structure"_L1) || inner.contains("ongoing_incidents"_L1) ||
               inner.contains("affected_components"_L1) || inner.contains("components"_L1);
    }
    return root.contains("ongoing_incidents"_L1) || root.contains("subpages"_L1);
}

namespace {

// The worst status each component key is referenced with.
QHash<QString, QString> worstStatusByKey(const QList<AffectedRef> &references)
{
    QHash<QString, QString> worstStatus;
    for (const AffectedRef &reference : references) {
        const auto keyed = keyedStatus(reference);
        if (!keyed)
            continue;
        auto recorded = worstStatus.find(keyed->key);
        if (recorded == worstStatus.end())
            worstStatus.insert(keyed->key, keyed->status);
        else if (statusSeverity(keyed->status) > statusSeverity(*recorded))
            *recorded = keyed->status;
    }
    return worstStatus;
}

QList<ComponentStatus> structuredComponents(const Summary &summary,
                                            const QHash<QString, QString> &worstStatus,
                                            const QString &sourceId)
{
    QList<ComponentStatus> components;
    const QList<Item> items =
        summary.structure ? summary.structure->items.value_or(QList<Item>()) : QList<Item>();
    for (const Item &item : items) {
        QList<Component> contributed;
        if (item.group && item.group->components)
            contributed = *item.group->components;
        else if (item.component)
            contributed = {*item.component};
        for (const Component &component : contributed) {
            if (component.hidden.value_or(false))
                continue;
            const auto key = keyOf(component.componentId, component.id);
            if (!key)
                continue;
            const QString status = worstStatus.value(*key, u"operational"_s);
            components.append({ComponentId(sourceId, *key), component.name.value_or(*key),
                               componentHealth(status), status});
        }
    }
    return components;
}

QList<ComponentStatus> referencedComponents(const QList<AffectedRef> &references,
                                            const QString &sourceId)
{
    QList<ComponentStatus> components;
    for (const AffectedRef &reference : references) {
        const auto keyed = keyedStatus(reference);
        if (!keyed || keyed->status == "operational"_L1)
            continue;
        components.append({ComponentId(sourceId, keyed->key), reference.name.value_or(keyed->key),
                           componentHealth(keyed->status), keyed->status});
    }
    return components;
}

} // namespace

std::optional<SourceResult> parse(const JSONSource &source, const JsonDocument &document)
{
    if (!looksLikeIncidentWidget(document))
        return std::nullopt;
    const std::optional<Summary> summary = decodeSummary(document);
    if (!summary)
        return std::nullopt;

    QList<AffectedRef> references = summary->affectedComponents.value_or(QList<AffectedRef>());
    const QList<Incident> incidents = summary->ongoingIncidents.value_or(QList<Incident>());
    for (const Incident &incident : incidents)
        references += incident.affectedComponents.value_or(QList<AffectedRef>());

    SourceResult result;
    result.id = source.id;
    result.name = source.name;

    // The page's own structure, each component at the worst status referenced; without one,
    // the components the references name.
    result.components = structuredComponents(*summary, worstStatusByKey(references), source.id);
    if (result.components.isEmpty())
        result.components = referencedComponents(references, source.id);

    result.url = pageAddress(source.homeURL, summary->publicUrl);

    SourceResult::keepFirstOfEachId(result.components);
    const JsonValue wrapped = document.object().value("summary"_L1);
    const JsonObject summaryObject = wrapped.isObject() ? wrapped.toObject() : document.object();
    const WebLink page = *result.url;
    result.incidents = NewsReader::incidentioIncidents(summaryObject, page);
    result.maintenances = NewsReader::incidentioMaintenances(summaryObject, page);
    std::tie(result.health, result.detail) = SourceResult::summarize(
        result.components, QCoreApplication::translate("Sources", "All Systems Operational"));

    for (const Incident &incident : incidents) {
        if (!incident.affectedComponents.value_or(QList<AffectedRef>()).isEmpty())
            continue;
        if (result.health == Health::operational || result.health == Health::unknown) {
            result.health = Health::degraded;
            result.detail =
                incident.name.value_or(QCoreApplication::translate("Sources", "Active incident"));
        }
        break;
    }

    result.checkedAt = QDateTime::currentDateTimeUtc();
    return result;
}

} // namespace lanternic::IncidentIOSource
