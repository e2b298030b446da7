#include "store/lanternicstore.h"

#include "config/appsettings.h"
#include "config/settingsfile.h"
#include "config/sourceregistry.h"
#include "platform/sleeptimer.h"
#include "sources/sourcekindstore.h"
#include "store/silencestore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHash>
#include <QPointer>
#include <QQueue>
#include <QSet>
#include <QTimer>
#include <algorithm>

namespace lanternic {

using namespace Qt::StringLiterals;

// Starts requests while fewer than the maximum are in flight, across all passes. Enough to
// keep any realistic source list entirely in flight, while a huge one neither runs out of
// file descriptors nor makes every event-loop turn poll thousands of sockets. Connecting costs
// the loop tens of microseconds a request, so only a few start in one turn of it: a pass over
// many sources never holds up for long what else the loop serves (the panel, or the watcher's
// clients).
class TransferQueue : public QObject {
public:
    static constexpr int maximumInFlight = 128;
    static constexpr int startsPerTurn = 8;

    using QObject::QObject;

    void enqueue(std::function<void()> start)
    {
        m_waiting.enqueue(std::move(start));
        startWaiting();
    }

    // One request started from here has answered.
    void finished()
    {
        --m_inFlight;
        startWaiting();
    }

private:
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

    int m_inFlight = 0;
    int m_startedThisTurn = 0;
    QQueue<std::function<void()>> m_waiting;
};

// One check pass. Sources whose page kind is known are checked at once; the bare hosts not
// yet in the kind cache are probed meanwhile, and their sources checked as each probe answers.
// Each result reaches the store as it comes; the pass ends when every source has one.
class CheckPass : public QObject {
public:
    CheckPass(LanternicStore &store, quint64 number, std::function<void()> done)
        : QObject(&store), m_store(store), m_number(number), m_done(std::move(done))
    {
    }

    void run()
    {
        m_text = m_store.m_settings.sourcesText();
        const QHash<QString, SourceKind> &kinds = m_store.m_kinds.cache();
        m_sources = sources(kinds);
        m_pending = m_sources.size();
        m_store.beginPass(m_number, m_sources);
        QSet<QString> probing;
        for (const QString &host : SourceRegistry::baseHosts(m_text)) {
            if (!kinds.contains(host.toLower()) && !probing.contains(host.toLower())) {
                probing.insert(host.toLower());
                probe(host);
            }
        }
        for (const JSONSource &source : std::as_const(m_sources)) {
            if (!probing.contains(source.baseHost.toLower()))
                check(source);
        }
    }

private:
    QList<JSONSource> sources(const QHash<QString, SourceKind> &kinds) const
    {
        QList<JSONSource> built = SourceRegistry::sources(m_text, kinds);
        if (m_store.m_settings.treatMaintenanceAsOperational()) {
            for (JSONSource &source : built)
                source.treatAsOperational.insert(u"under_maintenance"_s);
        }
        return built;
    }

    void probe(const QString &host)
    {
        m_store.m_queue->enqueue([this, host] {
            SourceKindStore::probe(host, m_store.m_session, this,
                                   [this, host](std::optional<SourceKind> kind) {
                                       m_store.m_queue->finished();
                                       probed(host, kind);
                                   });
        });
    }

    // A probe without an answer records nothing; the host's sources are checked either way.
    void probed(const QString &host, std::optional<SourceKind> kind)
    {
        if (kind) {
            SettingsFile::update(m_store.m_defaults,
                                 [this, &host, kind] { m_store.m_kinds.record(host, *kind); });
        }
        QHash<QString, JSONSource> known;
        for (JSONSource &source : sources(m_store.m_kinds.cache()))
            known.insert(source.id, std::move(source));
        for (JSONSource &source : m_sources) {
            if (source.baseHost.compare(host, Qt::CaseInsensitive) != 0)
                continue;
            source = known.value(source.id, source);
            check(source);
        }
    }

    void check(const JSONSource &source)
    {
        QPointer<CheckPass> pass(this);
        m_store.check(source, [pass, host = source.baseHost](const SourceResult &result) {
            if (pass)
                pass->arrived(result, host);
        });
    }

    void arrived(const SourceResult &result, const QString &host)
    {
        // A page that moved is asked again at the next pass which platform it is on.
        if (!host.isEmpty() && JSONSource::pageMoved(result) &&
            m_store.m_kinds.cache().contains(host.toLower()))
            SettingsFile::update(m_store.m_defaults,
                                 [this, &host] { m_store.m_kinds.forget(host); });
        m_collected.append(result);
        m_store.resultArrived(m_number, result);
        if (--m_pending == 0)
            finish();
    }

    void finish()
    {
        m_store.finishPass(m_number, m_sources, std::move(m_collected));
        if (m_done)
            m_done();
        deleteLater();
    }

    LanternicStore &m_store;
    const quint64 m_number;
    std::function<void()> m_done;
    QString m_text;
    qsizetype m_pending = 0;
    QList<JSONSource> m_sources;
    QList<SourceResult> m_collected;
};

LanternicStore::LanternicStore(AppSettings &settings, SilenceStore &silence, SourceKindStore &kinds,
                               QSettings &defaults, network::Session &session, QObject *parent)
    : QObject(parent), m_settings(settings), m_silence(silence), m_kinds(kinds),
      m_defaults(defaults), m_session(session), m_clock(&QDateTime::currentDateTimeUtc),
      m_history(CheckHistory::load(defaults)),
      m_healthLog(HealthLog::load(defaults).value_or(HealthLog())),
      m_queue(new TransferQueue(this)), m_pollTimer(new SleepTimer(this)),
      m_sourcesSettled(new QTimer(this))
{
    m_sourcesSettled->setSingleShot(true);
    m_sourcesSettled->setInterval(sourcesSettleDelay);
    connect(&settings, &AppSettings::sourcesTextChanged, m_sourcesSettled,
            qOverload<>(&QTimer::start));
    connect(&settings, &AppSettings::treatMaintenanceAsOperationalChanged, m_sourcesSettled,
            qOverload<>(&QTimer::start));
    connect(m_sourcesSettled, &QTimer::timeout, this, [this] { refresh(); });

    const QDateTime now = m_clock();
    for (const JSONSource &source : SourceRegistry::sources(settings.sourcesText(), kinds.cache()))
        m_results.append(placeholder(source, now));
}

SourceResult LanternicStore::placeholder(const JSONSource &source, const QDateTime &now)
{
    SourceResult result;
    result.id = source.id;
    result.name = source.name;
    result.health = Health::unknown;
    result.detail = tr("Checking\u2026");
    result.url = source.homeURL;
    result.checkedAt = now;
    return result;
}

LanternicStore::~LanternicStore() = default;

void LanternicStore::refresh(std::function<void()> done)
{
    if (m_running++ == 0)
        m_busy.start();
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

void LanternicStore::check(const JSONSource &source, std::function<void(const SourceResult &)> done)
{
    const QString key = source.id + u'\n' + source.name + u'\n' + source.url.toString();
    if (auto running = m_checks.find(key); running != m_checks.end()) {
        running->append(std::move(done));
        return;
    }
    m_checks.insert(key, {std::move(done)});
    // Checks belong to the store, not to one pass: a later pass may be waiting for them too.
    m_queue->enqueue([this, source, key] {
        source.check(
            m_session, this,
            [this, key, source](SourceResult result) {
                m_queue->finished();
                if (!m_relayIdentity.isEmpty() && result.relayedVia.contains(m_relayIdentity))
                    result =
                        source.failure(tr("Relay loop"),
                                       tr("This relay feed already passed through this watcher"));
                for (const auto &done : m_checks.take(key))
                    done(result);
            },
            m_clock);
    });
}

void LanternicStore::beginPass(quint64 number, const QList<JSONSource> &sources)
{
    m_rowsPass = number;
    QHash<QString, qsizetype> previous;
    for (qsizetype i = 0; i < m_results.size(); ++i)
        previous.insert(m_results[i].id, i);
    QList<SourceResult> rows;
    rows.reserve(sources.size());
    const QDateTime now = m_clock();
    for (const JSONSource &source : sources) {
        if (auto kept = previous.constFind(source.id); kept != previous.constEnd())
            rows.append(m_results[*kept]);
        else
            rows.append(placeholder(source, now));
    }
    if (rows != m_results) {
        m_results = std::move(rows);
        Q_EMIT resultsChanged();
    }
}

void LanternicStore::resultArrived(quint64 number, const SourceResult &result)
{
    if (number != m_rowsPass)
        return; // the rows are a later pass's now, which waits for the same check
    for (SourceResult &row : m_results) {
        if (row.id == result.id) {
            if (row != result) {
                row = result;
                Q_EMIT resultsChanged();
            }
            return;
        }
    }
}

void LanternicStore::finishPass(quint64 number, const QList<JSONSource> &sources,
                                QList<SourceResult> collected)
{
    // A pass that a later one has overtaken read older settings, or an older state of the
    // pages: the later one publishes.
    --m_running;
    if (number != m_passesStarted) {
        setRefreshing(m_running > 0);
        return;
    }
    // From the start of the earliest pass still running: a pass that overtook another (a
    // recheck just after start) joined its checks, and the view took that long to settle.
    m_lastPassDuration = std::chrono::microseconds(m_busy.nsecsElapsed() / 1000);

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
    const std::optional<QDateTime> previousPass = std::exchange(m_lastChecked, now);
    Q_EMIT lastCheckedChanged();

    QSet<QString> trouble;
    QSet<QString> unread;
    bool logChanged = m_healthLog.trim(now);
    for (const SourceResult &result : std::as_const(m_results)) {
        // The log keeps health as read; while the system has no network nothing is watched.
        if (m_isOffline) {
            logChanged = m_healthLog.stop(result.id, previousPass.value_or(now)) || logChanged;
        } else {
            QStringList incidents;
            for (const Incident &incident : result.incidents.mid(0, 5))
                incidents.append(incident.name.left(200));
            const QList<HealthTick> ticks = m_history.byId.value(result.id);
            const std::optional<QDateTime> lastSeen =
                previousPass ? previousPass
                             : (ticks.isEmpty() ? std::nullopt : std::optional(ticks.last().date));
            logChanged = m_healthLog.record(result.id, result.health, incidents, now, lastSeen) ||
                         logChanged;
        }
        m_history.record(result.id, DisplaySummary::effectiveHealth(result, m_silence, now), now);
        if (result.health != Health::operational)
            trouble.insert(result.id);
        if (result.error)
            unread.insert(result.id);
        for (const ComponentStatus &component : result.affectedComponents())
            trouble.insert(component.id);
    }
    // Another program on the same settings file may have kept ticks since: both are kept.
    SettingsFile::update(m_defaults, [this, logChanged, &now] {
        m_history.mergeAndSave(m_defaults);
        // Written only when something changed, which most passes do not.
        // What is stored but cannot be read is not saved over.
        const std::optional<HealthLog> stored =
            logChanged ? HealthLog::load(m_defaults) : std::nullopt;
        if (stored) {
            m_healthLog.merge(*stored);
            m_healthLog.trim(now);
            m_healthLog.save(m_defaults);
        }
    });
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
