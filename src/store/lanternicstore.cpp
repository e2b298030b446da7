#include "store/lanternicstore.h"

#include "config/appsettings.h"
#include "config/settingsfile.h"
#include "config/sourceregistry.h"
#include "platform/sleeptimer.h"
#include "sources/sourcekindstore.h"
#include "store/silencestore.h"

#include <QElapsedTimer>
#include <QHash>
#include <QQueue>
#include <QSet>
#include <QTimer>
#include <algorithm>

namespace lanternic {

using namespace Qt::StringLiterals;

// One check pass: probes the new hosts, then checks every source, many requests in flight at
// once. It owns its replies, so deleting it (with the store) cancels what is still open.
class CheckPass : public QObject {
public:
    // Enough to keep any realistic source list entirely in flight, while a huge one neither
    // runs out of file descriptors nor makes every event-loop turn poll thousands of sockets.
    static constexpr int maximumInFlight = 128;
    static constexpr int startsPerTurn = 8;

    CheckPass(LanternicStore &store, quint64 number, std::function<void()> done)
        : QObject(&store), m_store(store), m_number(number), m_done(std::move(done))
    {
        m_clock.start();
    }

    void run()
    {
        QStringList hosts;
        for (const QString &host : SourceRegistry::baseHosts(m_store.m_settings.sourcesText())) {
            if (!m_store.m_kinds.cache().contains(host.toLower()))
                hosts.append(host);
        }
        if (hosts.isEmpty()) {
            checkSources();
            return;
        }
        m_pending = hosts.size();
        for (const QString &host : hosts) {
            enqueue([this, host] {
                SourceKindStore::probe(host, m_store.m_session, this,
                                       [this, host](std::optional<SourceKind> kind) {
                                           m_probed.append({host, kind});
                                           jobFinished();
                                           if (--m_pending == 0)
                                               recordKindsAndCheck();
                                       });
            });
        }
    }

private:
    void recordKindsAndCheck()
    {
        // In the order the probes finished; a probe without an answer records nothing.
        SettingsFile::update(m_store.m_defaults, [this] {
            for (const auto &[host, kind] : m_probed) {
                if (kind)
                    m_store.m_kinds.record(host, *kind);
            }
        });
        checkSources();
    }

    void checkSources()
    {
        m_sources =
            SourceRegistry::sources(m_store.m_settings.sourcesText(), m_store.m_kinds.cache());
        m_pending = m_sources.size();
        for (const JSONSource &source : std::as_const(m_sources)) {
            enqueue([this, &source] {
                source.check(m_store.m_session, this, [this](SourceResult result) {
                    m_collected.append(std::move(result));
                    jobFinished();
                    if (--m_pending == 0)
                        finish();
                });
            });
        }
    }

    // Starts a request as soon as fewer than the maximum are in flight.
    void enqueue(std::function<void()> start)
    {
        m_waiting.enqueue(std::move(start));
        startWaiting();
    }

    // Connecting costs the loop tens of microseconds a request, so only a few requests start in
    // one turn of it: a pass over many sources never holds up for long what else the loop
    // serves (the panel, or the watcher's clients).
    void startWaiting()
    {
        while (!m_waiting.isEmpty() && m_inFlight < maximumInFlight &&
               m_startedThisTurn < startsPerTurn) {
            if (m_startedThisTurn++ == 0) {
                QTimer::singleShot(0, this, [this] {
                    m_startedThisTurn = 0;
                    startWaiting();
                });
            }
            ++m_inFlight;
            m_waiting.dequeue()();
        }
    }

    void jobFinished()
    {
        --m_inFlight;
        startWaiting();
    }

    void finish()
    {
        m_store.finishPass(m_number, std::chrono::milliseconds(m_clock.elapsed()), m_sources,
                           std::move(m_collected));
        if (m_done)
            m_done();
        deleteLater();
    }

    LanternicStore &m_store;
    const quint64 m_number;
    std::function<void()> m_done;
    QElapsedTimer m_clock;
    qsizetype m_pending = 0;
    int m_inFlight = 0;
    int m_startedThisTurn = 0;
    QQueue<std::function<void()>> m_waiting;
    QList<std::pair<QString, std::optional<SourceKind>>> m_probed;
    QList<JSONSource> m_sources;
    QList<SourceResult> m_collected;
};

LanternicStore::LanternicStore(AppSettings &settings, SilenceStore &silence, SourceKindStore &kinds,
                               QSettings &defaults, network::Session &session, QObject *parent)
    : QObject(parent), m_settings(settings), m_silence(silence), m_kinds(kinds),
      m_defaults(defaults), m_session(session), m_clock(&QDateTime::currentDateTimeUtc),
      m_history(CheckHistory::load(defaults)), m_pollTimer(new SleepTimer(this)),
      m_sourcesSettled(new QTimer(this))
{
    m_sourcesSettled->setSingleShot(true);
    m_sourcesSettled->setInterval(sourcesSettleDelay);
    connect(&settings, &AppSettings::sourcesTextChanged, m_sourcesSettled,
            qOverload<>(&QTimer::start));
    connect(m_sourcesSettled, &QTimer::timeout, this, [this] { refresh(); });

    const QDateTime now = m_clock();
    for (const JSONSource &source :
         SourceRegistry::sources(settings.sourcesText(), kinds.cache())) {
        SourceResult placeholder;
        placeholder.id = source.id;
        placeholder.name = source.name;
        placeholder.health = Health::unknown;
        placeholder.detail = u"Checking\u2026"_s;
        placeholder.url = source.homeURL;
        placeholder.checkedAt = now;
        m_results.append(placeholder);
    }
}

LanternicStore::~LanternicStore() = default;

void LanternicStore::refresh(std::function<void()> done)
{
    ++m_running;
    setRefreshing(true);
    (new CheckPass(*this, ++m_passesStarted, std::move(done)))->run();
}

void LanternicStore::start()
{
    // A new generation makes the passes of an earlier loop end that loop when they finish.
    const quint64 generation = ++m_pollGeneration;
    m_pollTimer->stop();
    disconnect(m_pollTimer, nullptr, this, nullptr);
    auto pass = [this, generation] {
        refresh([this, generation] {
            if (generation == m_pollGeneration)
                m_pollTimer->start(pollInterval());
        });
    };
    connect(m_pollTimer, &SleepTimer::timeout, this, pass);
    pass();
}

std::chrono::milliseconds LanternicStore::pollInterval() const
{
    if (m_intervalOverride)
        return *m_intervalOverride;
    // A stored value no settings window offers must neither hammer the pages nor stop checks.
    return std::chrono::minutes(std::clamp(m_settings.refreshIntervalMinutes(), 1, 60));
}

void LanternicStore::finishPass(quint64 number, std::chrono::milliseconds duration,
                                const QList<JSONSource> &sources, QList<SourceResult> collected)
{
    // A pass that started before the one published last read older settings, or an older
    // state of the pages: what it found is no longer news.
    --m_running;
    if (number < m_passPublished) {
        setRefreshing(m_running > 0);
        return;
    }
    m_passPublished = number;
    m_lastPassDuration = duration;

    QHash<QString, qsizetype> position;
    for (qsizetype i = 0; i < sources.size(); ++i)
        position.insert(sources[i].id, i);
    std::stable_sort(collected.begin(), collected.end(), [&](const auto &a, const auto &b) {
        return position.value(a.id, sources.size()) < position.value(b.id, sources.size());
    });

    if (collected != m_results) {
        m_results = std::move(collected);
        Q_EMIT resultsChanged();
    }
    const QDateTime now = m_clock();
    m_lastChecked = now;
    Q_EMIT lastCheckedChanged();

    QSet<QString> trouble;
    QSet<QString> unread;
    for (const SourceResult &result : std::as_const(m_results)) {
        m_history.record(result.id, DisplaySummary::effectiveHealth(result, m_silence, now), now);
        if (result.health != Health::operational)
            trouble.insert(result.id);
        if (result.error)
            unread.insert(result.id);
        for (const ComponentStatus &component : result.affectedComponents())
            trouble.insert(component.id);
    }
    // Another program on the same settings file may have kept ticks since: both are kept.
    SettingsFile::update(m_defaults, [this] { m_history.mergeAndSave(m_defaults); });
    Q_EMIT historyChanged();

    m_silence.prune(trouble, unread, now);
    setRefreshing(m_running > 0);
    Q_EMIT passFinished();
}

void LanternicStore::setOffline(bool offline)
{
    if (offline == m_isOffline)
        return;
    m_isOffline = offline;
    Q_EMIT offlineChanged();
}

void LanternicStore::setRefreshing(bool refreshing)
{
    if (refreshing == m_isRefreshing)
        return;
    m_isRefreshing = refreshing;
    Q_EMIT isRefreshingChanged();
}

QList<DisplayProvider> LanternicStore::providers() const
{
    return DisplaySummary::providers(m_results, m_silence, m_clock());
}

Health LanternicStore::overallHealth() const
{
    return DisplaySummary::overallHealth(m_results, providers());
}

QString LanternicStore::summaryText() const
{
    return DisplaySummary::summaryText(m_results, providers());
}

int LanternicStore::issueCount(Health health) const
{
    return DisplaySummary::issueCount(providers(), health, m_silence, m_clock());
}

QList<SilencedItem> LanternicStore::silencedItems() const
{
    return DisplaySummary::silencedItems(m_results, m_silence, m_clock());
}

} // namespace lanternic
