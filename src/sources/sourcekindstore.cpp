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

SourceKindStore::SourceKindStore(QSettings &defaults) : m_defaults(defaults)
{
    const QVariant stored = m_defaults.value(storageKey);
    if (stored.typeId() != QMetaType::QVariantMap)
        return;
    const QVariantMap map = stored.toMap();
    QHash<QString, SourceKind> loaded;
    for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
        if (it.value().typeId() != QMetaType::QString)
            return;
        if (auto kind = sourceKindFromRawValue(it.value().toString()))
            loaded.insert(it.key(), *kind);
    }
    m_cache = std::move(loaded);
}

void SourceKindStore::record(const QString &host, SourceKind kind)
{
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
    session.get(*url, context, [done = std::move(done)](network::Response response) {
        if (response.transferFailure || !response.httpStatus)
            done(std::nullopt);
        else if (*response.httpStatus == 200 &&
                 IncidentIOSource::looksLikeIncidentWidget(parseJson(response.body)))
            done(SourceKind::incidentio);
        else
            done(SourceKind::atlassian);
    });
}

} // namespace lanternic
