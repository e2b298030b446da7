#include "sources/readers/updog.h"

#include "model/jsonsource.h"
#include "sources/readers/jsondecoder.h"

#include <QCoreApplication>

namespace lanternic::UpdogSource {

using namespace Qt::StringLiterals;

namespace {

QString noOutages()
{
    return QCoreApplication::translate("Sources", "No outages detected");
}

std::optional<QList<Provider>> decodeProviders(const JsonDocument &document)
{
    JsonDecoder d(KeyStyle::fromSnakeCase);
    const auto data = d.optionalObject(d.root(document), "data"_L1);
    const auto attributes = data ? d.optionalObject(*data, "attributes"_L1) : std::nullopt;
    const auto providerData =
        attributes ? d.optionalArray(*attributes, "providerData"_L1) : std::nullopt;
    if (!providerData)
        return std::nullopt;

    QList<Provider> providers;
    providers.reserve(providerData->size());
    for (const JsonValue &value : *providerData) {
        const JsonObject object = d.element(value, "provider_data"_L1);
        Provider provider{d.optionalString(object, "providerName"_L1),
                          d.optionalString(object, "providerService"_L1),
                          d.optionalString(object, "displayName"_L1), std::nullopt};
        if (auto outages = d.optionalArray(object, "outages"_L1)) {
            provider.outages.emplace();
            for (const JsonValue &outageValue : *outages) {
                const JsonObject outage = d.element(outageValue, "outages"_L1);
                provider.outages->append({d.optionalString(outage, "status"_L1),
                                          d.optionalString(outage, "impactedRegion"_L1)});
            }
        }
        providers.append(std::move(provider));
    }
    if (!d.ok())
        return std::nullopt;
    return providers;
}

ComponentStatus componentOf(const QString &id, const Provider &provider)
{
    const bool outage = provider.hasOngoingOutage();
    return {ComponentId(id, provider.componentKey()), provider.componentName(),
            outage ? Health::degraded : Health::operational,
            outage ? u"ongoing outage"_s : u"operational"_s};
}

} // namespace

bool Provider::hasOngoingOutage() const
{
    for (const Outage &outage : outages.value_or(QList<Outage>())) {
        if (outage.status == u"ongoing"_s)
            return true;
    }
    return false;
}

std::optional<QString> Provider::ongoingRegion() const
{
    for (const Outage &outage : outages.value_or(QList<Outage>())) {
        if (outage.status == u"ongoing"_s)
            return outage.impactedRegion;
    }
    return std::nullopt;
}

QString Provider::componentKey() const
{
    return providerName.value_or(u"?"_s) + u'/' + providerService.value_or(QString());
}

QString Provider::componentName() const
{
    if (displayName)
        return *displayName;
    if (providerService)
        return *providerService;
    return providerName.value_or(u"?"_s);
}

bool looksLikeUpdogFeed(const JsonDocument &document)
{
    return document.object()
        .value("data"_L1)
        .toObject()
        .value("attributes"_L1)
        .toObject()
        .value("provider_data"_L1)
        .isArray();
}

std::optional<SourceResult> parse(const JSONSource &source, const JsonDocument &document)
{
    if (!looksLikeUpdogFeed(document))
        return std::nullopt;
    const std::optional<QList<Provider>> providers = decodeProviders(document);
    if (!providers)
        return std::nullopt;

    const QString &id = source.id;
    const std::optional<QString> &provider = source.updogProvider;
    const std::optional<QString> &service = source.updogService;
    SourceResult result;
    result.id = id;
    result.name = source.name;
    result.url = source.homeURL;
    result.checkedAt = QDateTime::currentDateTimeUtc();

    QList<Provider> matches;
    if (provider) {
        for (const Provider &candidate : *providers) {
            if (candidate.providerName == provider &&
                (!service || candidate.providerService == service))
                matches.append(candidate);
        }
    }

    if (!provider || matches.size() > 1) {
        for (const Provider &entry : provider ? matches : *providers)
            result.components.append(componentOf(id, entry));
        SourceResult::keepFirstOfEachId(result.components);
        std::tie(result.health, result.detail) =
            SourceResult::summarize(result.components, noOutages());
    } else if (matches.isEmpty()) {
        result.health = Health::unknown;
        result.detail = QCoreApplication::translate("Sources", "Not monitored by Updog");
        result.error =
            "Updog does not monitor "_L1 + *provider + (service ? u'/' + *service : QString());
    } else if (matches.first().hasOngoingOutage()) {
        const auto region = matches.first().ongoingRegion();
        result.health = Health::degraded;
        result.detail =
            (region
                 ? QCoreApplication::translate("Sources", "Outage detected \u2014 %1").arg(*region)
                 : QCoreApplication::translate("Sources", "Outage detected"));
    } else {
        result.health = Health::operational;
        result.detail = noOutages();
    }
    return result;
}

} // namespace lanternic::UpdogSource
