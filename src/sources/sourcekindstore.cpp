#include "sources/sourcekindstore.h"

#include "model/settingskeys.h"
#include "model/urls.h"
#include "sources/incidentiosource.h"
#include "sources/jsondecoder.h"
#include "sources/network.h"

#include <QSettings>
#include <QVariantMap>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {
const QString &storageKey = SettingsKeys::sourceKinds;
}

QString rawValue(SourceKind kind)
{
    return kind == SourceKind::incidentio ? u"incidentio"_s : u"atlassian"_s;
}

std::optional<SourceKind> sourceKindFromRawValue(QStringView text)
{
    if (text == u"atlassian")
        return SourceKind::atlassian;
    if (text == u"incidentio")
        return SourceKind::incidentio;
    return std::nullopt;
}

namespace {

QHash<QString, SourceKind> stored(QSettings &defaults)
{
    const QVariant value = defaults.value(storageKey);
    if (value.typeId() != QMetaType::QVariantMap)
        return {};
    const QVariantMap map = value.toMap();
    QHash<QString, SourceKind> loaded;
    for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
        if (it.value().typeId() != QMetaType::QString)
            return {};
        if (auto kind = sourceKindFromRawValue(it.value().toString()))
            loaded.insert(it.key(), *kind);
    }
    return loaded;
}

} // namespace

SourceKindStore::SourceKindStore(QSettings &defaults)
    : m_defaults(defaults), m_cache(stored(defaults))
{
}

void SourceKindStore::record(const QString &host, SourceKind kind)
{
    // Hosts another program on the same settings recorded meanwhile stay.
    const QHash<QString, SourceKind> others = stored(m_defaults);
    for (auto it = others.constBegin(); it != others.constEnd(); ++it) {
        if (!m_cache.contains(it.key()))
            m_cache.insert(it.key(), it.value());
    }
    m_cache.insert(host.toLower(), kind);
    QVariantMap map;
    for (auto it = m_cache.constBegin(); it != m_cache.constEnd(); ++it)
        map.insert(it.key(), rawValue(it.value()));
    m_defaults.setValue(storageKey, map);
}

void SourceKindStore::probe(const QString &host, network::Session &session, QObject *context,
                            std::function<void(std::optional<SourceKind>)> done)
{
    const auto url = parseUrl("https://"_L1 + host + "/proxy/"_L1 + host);
    if (!url) {
        done(std::nullopt);
        return;
    }
    session.get(
        *url, context,
        [done = std::move(done)](network::Response response) {
            if (response.transferFailure || !response.httpStatus)
                done(std::nullopt);
            else if (*response.httpStatus == 200 &&
                     IncidentIOSource::looksLikeIncidentWidget(parseJson(response.body)))
                done(SourceKind::incidentio);
            else
                done(SourceKind::atlassian);
        },
        network::Session::Purpose::probe);
}

} // namespace lanternic
