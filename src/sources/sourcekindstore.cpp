#include "sources/sourcekindstore.h"

#include "model/settingskeys.h"
#include "model/urls.h"
#include "sources/network.h"
#include "sources/readers/jsondecoder.h"

#include <QDeadlineTimer>
#include <QSettings>
#include <QVariantMap>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

const QString &storageKey = SettingsKeys::sourceKinds;

QVariantMap storedForm(const QHash<QString, SourceKind> &cache)
{
    QVariantMap map;
    for (auto it = cache.constBegin(); it != cache.constEnd(); ++it)
        map.insert(it.key(), QString(Platforms::of(it.value()).storedName));
    return map;
}

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
        if (auto kind = Platforms::kindFromStoredName(it.value().toString()))
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
    m_defaults.setValue(storageKey, storedForm(m_cache));
}

void SourceKindStore::forget(const QString &host)
{
    if (m_cache.remove(host.toLower()))
        m_defaults.setValue(storageKey, storedForm(m_cache));
}

namespace {

// One probe of one host: its steps in turn, each within what is left of the probe's time.
class KindProbe : public QObject {
public:
    using Done = std::function<void(std::optional<SourceKind>)>;

    KindProbe(QString host, network::Session &session, QObject *context, Done done)
        : QObject(context), m_site{host, QUrl(u"https://"_s + host)}, m_session(session),
          m_deadline(session.options().probeLimit), m_done(std::move(done))
    {
    }

    // The platforms asked alone, in turn, from index on; then the others all at once; then
    // the ones asked last, in turn.
    void inTurn(Probe phase = Probe::alone, qsizetype index = 0)
    {
        const std::span<const Platform> platforms = Platforms::all();
        while (index < qsizetype(platforms.size()) && platforms[index].probe != phase)
            ++index;
        if (index == qsizetype(platforms.size())) {
            if (phase == Probe::alone)
                together();
            else
                finish(SourceKind::atlassian); // a host that answers HTTP with none of them
            return;
        }
        const Platform &platform = platforms[index];
        const bool first = phase == Probe::alone && !m_asked++;
        ask(platform, [this, phase, index, first, &platform](const network::Response &response) {
            if (first && !answered(response))
                finish(std::nullopt);
            else if (recognized(platform, response))
                finish(platform.kind);
            else
                inTurn(phase, index + 1);
        });
    }

private:
    // The first in table order whose document came wins.
    void together()
    {
        for (const Platform &platform : Platforms::all()) {
            if (platform.probe == Probe::together)
                m_together.append(&platform);
        }
        m_found.fill(false, m_together.size());
        m_pending = int(m_together.size());
        for (qsizetype i = 0; i < m_together.size(); ++i) {
            ask(*m_together[i], [this, i](const network::Response &response) {
                m_found[i] = recognized(*m_together[i], response);
                if (--m_pending > 0)
                    return;
                const qsizetype first = m_found.indexOf(true);
                if (first < 0)
                    inTurn(Probe::last);
                else
                    finish(*m_together[first]->kind);
            });
        }
    }

    static bool answered(const network::Response &response)
    {
        return !response.transferFailure && response.httpStatus;
    }

    static bool recognized(const Platform &platform, const network::Response &response)
    {
        return answered(response) &&
               Platforms::recognizes(platform, *response.httpStatus, response.body);
    }

    void ask(const Platform &platform, std::function<void(const network::Response &)> then)
    {
        const auto url = platform.document(m_site, std::nullopt);
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

    Site m_site;
    network::Session &m_session;
    QDeadlineTimer m_deadline;
    Done m_done;
    QList<const Platform *> m_together;
    QList<bool> m_found;
    int m_pending = 0;
    int m_asked = 0;
};

} // namespace

void SourceKindStore::probe(const QString &host, network::Session &session, QObject *context,
                            std::function<void(std::optional<SourceKind>)> done)
{
    if (!parseUrl("https://"_L1 + host + "/proxy/"_L1 + host)) {
        done(std::nullopt);
        return;
    }
    (new KindProbe(host, session, context, std::move(done)))->inTurn();
}

} // namespace lanternic
