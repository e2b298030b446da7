#include "sources/sourcekindstore.h"

#include "model/settingskeys.h"
#include "model/urls.h"
#include "sources/incidentiosource.h"
#include "sources/jsondecoder.h"
#include "sources/jsonsource.h"
#include "sources/network.h"
#include "sources/platformreaders.h"
#include "sources/statuspagesource.h"

#include <QDeadlineTimer>
#include <QSettings>
#include <QVariantMap>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {
const QString &storageKey = SettingsKeys::sourceKinds;
}

namespace {

const std::pair<SourceKind, QString> kindNames[] = {
    {SourceKind::atlassian, u"atlassian"_s}, {SourceKind::incidentio, u"incidentio"_s},
    {SourceKind::instatus, u"instatus"_s},   {SourceKind::betterstack, u"betterstack"_s},
    {SourceKind::cachet, u"cachet"_s},       {SourceKind::gatus, u"gatus"_s},
};

} // namespace

QString rawValue(SourceKind kind)
{
    for (const auto &[known, name] : kindNames) {
        if (known == kind)
            return name;
    }
    return u"atlassian"_s;
}

std::optional<SourceKind> sourceKindFromRawValue(QStringView text)
{
    for (const auto &[kind, name] : kindNames) {
        if (text == name)
            return kind;
    }
    return std::nullopt;
}

QString documentPath(SourceKind kind)
{
    switch (kind) {
    case SourceKind::instatus:
        return u"/summary.json"_s;
    case SourceKind::betterstack:
        return u"/index.json"_s;
    case SourceKind::cachet:
        return u"/api/v1/components"_s;
    case SourceKind::gatus:
        return u"/api/v1/endpoints/statuses"_s;
    case SourceKind::atlassian:
    case SourceKind::incidentio:
        break;
    }
    return u"/api/v2/summary.json"_s;
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

void SourceKindStore::forget(const QString &host)
{
    if (!m_cache.remove(host.toLower()))
        return;
    QVariantMap map;
    for (auto it = m_cache.constBegin(); it != m_cache.constEnd(); ++it)
        map.insert(it.key(), rawValue(it.value()));
    m_defaults.setValue(storageKey, map);
}

namespace {

// One probe of one host: its steps in turn, each within what is left of the probe's time.
class KindProbe : public QObject {
public:
    using Done = std::function<void(std::optional<SourceKind>)>;

    KindProbe(QString host, network::Session &session, QObject *context, Done done)
        : QObject(context), m_host(std::move(host)), m_session(session),
          m_deadline(session.options().probeLimit), m_done(std::move(done))
    {
    }

    void widget()
    {
        ask(u"/proxy/"_s + m_host, [this](const network::Response &response) {
            if (!answered(response)) {
                finish(std::nullopt);
            } else if (*response.httpStatus == 200 &&
                       IncidentIOSource::looksLikeIncidentWidget(parseJson(response.body))) {
                finish(SourceKind::incidentio);
            } else {
                summary();
            }
        });
    }

private:
    void summary()
    {
        ask(documentPath(SourceKind::atlassian), [this](const network::Response &response) {
            if (ok(response) && StatuspageSource::decode(parseJson(response.body)))
                finish(SourceKind::atlassian);
            else
                others();
        });
    }

    // The platforms that live on the page's own host, asked at once; the first of them in
    // this order whose document came wins.
    void others()
    {
        static const std::pair<SourceKind, PlatformReaders::Reader> platforms[] = {
            {SourceKind::instatus, &PlatformReaders::instatus},
            {SourceKind::betterstack, &PlatformReaders::betterStack},
            {SourceKind::cachet, &PlatformReaders::cachet},
            {SourceKind::gatus, &PlatformReaders::gatus},
        };
        m_found.fill(false, std::size(platforms));
        m_pending = int(std::size(platforms));
        for (qsizetype i = 0; i < qsizetype(std::size(platforms)); ++i) {
            const PlatformReaders::Reader reader = platforms[i].second;
            ask(documentPath(platforms[i].first),
                [this, i, reader](const network::Response &response) {
                    m_found[i] =
                        ok(response) && reader(JSONSource(), parseJson(response.body)).has_value();
                    if (--m_pending > 0)
                        return;
                    for (qsizetype j = 0; j < m_found.size(); ++j) {
                        if (m_found[j]) {
                            finish(platforms[j].first);
                            return;
                        }
                    }
                    finish(SourceKind::atlassian); // the host answers HTTP: as before
                });
        }
    }

    static bool answered(const network::Response &response)
    {
        return !response.transferFailure && response.httpStatus;
    }

    static bool ok(const network::Response &response)
    {
        return answered(response) && *response.httpStatus >= 200 && *response.httpStatus < 300;
    }

    void ask(const QString &path, std::function<void(const network::Response &)> then)
    {
        const auto url = parseUrl("https://"_L1 + m_host + path);
        const auto left = std::chrono::milliseconds(m_deadline.remainingTime());
        if (!url || left.count() <= 0) {
            then(network::Response{u"probe over"_s, std::nullopt, {}, {}});
            return;
        }
        m_session.get(
            *url, this, [then = std::move(then)](network::Response response) { then(response); },
            left);
    }

    void finish(std::optional<SourceKind> kind)
    {
        auto done = std::move(m_done);
        deleteLater();
        done(kind);
    }

    QString m_host;
    network::Session &m_session;
    QDeadlineTimer m_deadline;
    Done m_done;
    QList<bool> m_found;
    int m_pending = 0;
};

} // namespace

void SourceKindStore::probe(const QString &host, network::Session &session, QObject *context,
                            std::function<void(std::optional<SourceKind>)> done)
{
    if (!parseUrl("https://"_L1 + host + "/proxy/"_L1 + host)) {
        done(std::nullopt);
        return;
    }
    (new KindProbe(host, session, context, std::move(done)))->widget();
}

} // namespace lanternic
