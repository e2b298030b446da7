#include "store/lanternicstore.h"

#include "config/appsettings.h"
#include "config/sourceregistry.h"
#include "platform/sleeptimer.h"
#include "sources/sourcecheck.h"
#include "sources/sourcekindstore.h"
#include "store/checkpass.h"
#include "store/silencestore.h"
#include "store/transferqueue.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHash>
#include <QTimer>
#include <algorithm>
#include <vector>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

// In the sources' order, results of sources no longer listed last as they came; each
// result's place is looked up once, not at every comparison. Apart, so that its tables are
// gone before the pass is published.
void sortLike(const QList<JSONSource> &sources, QList<SourceResult> &results)
{
    QHash<QString, qsizetype> position;
    position.reserve(sources.size());
    for (qsizetype i = 0; i < sources.size(); ++i)
        position.insert(sources[i].id, i);
    // Each result's place, then its arrival: distinct pairs, so any sort is a stable one.
    std::vector<std::pair<qsizetype, qsizetype>> order;
    order.reserve(results.size());
    for (qsizetype i = 0; i < results.size(); ++i)
        order.emplace_back(position.value(results[i].id, sources.size()), i);
    std::sort(order.begin(), order.end());
    QList<SourceResult> sorted;
    sorted.reserve(results.size());
    for (const auto &[place, arrival] : order)
        sorted.append(std::move(results[arrival]));
    results = std::move(sorted);
}

} // namespace

LanternicStore::LanternicStore(AppSettings &settings, SilenceStore &silence, SourceKindStore &kinds,
                               QSettings &defaults, network::Session &session, QObject *parent)
    : QObject(parent), m_settings(settings), m_silence(silence), m_kinds(kinds),
      m_defaults(defaults), m_session(session), m_clock(&QDateTime::currentDateTimeUtc),
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
    const QList<JSONSource> sources =
        m_sourceLists.sources(settings.sourcesText(), kinds.cache(), settings.sourceOptions());
    m_results.reserve(sources.size());
    for (const JSONSource &source : sources)
        m_results.append(placeholder(source, now));
    indexRows();
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
    const quint64 number = ++m_passesStarted;
    PassHost host{
        m_settings,
        m_kinds,
        m_sourceLists,
        m_defaults,
        m_session,
        *m_queue,
        [this](const JSONSource &source, std::function<void(const SourceResult &)> checked) {
            check(source, std::move(checked));
        },
        [this, number](const QList<JSONSource> &sources) { beginPass(number, sources); },
        [this, number](const SourceResult &result) { resultArrived(number, result); },
        [this, number](const QList<JSONSource> &sources, QList<SourceResult> collected) {
            finishPass(number, sources, std::move(collected));
        }};
    (new CheckPass(std::move(host), std::move(done), this))->run();
}

void LanternicStore::start()
{
    // A new generation makes the passes of an earlier loop end that loop when they finish.
    const quint64 generation = ++m_pollGeneration;
    m_pollTimer->stop();
    // The pass it starts now reads the sources as they are.
    m_sourcesSettled->stop();
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
    const CheckKey key{source.id, source.name, source.url};
    if (auto running = m_checks.find(key); running != m_checks.end()) {
        running->append(std::move(done));
        return;
    }
    m_checks.insert(key, {std::move(done)});
    // Checks belong to the store, not to one pass: a later pass may be waiting for them too.
    m_queue->enqueue([this, source, key] {
        SourceCheck::check(
            source, m_session, this,
            [this, key, source](SourceResult result) {
                m_queue->finished();
                if (!m_relayIdentity.isEmpty() && result.relayedVia.contains(m_relayIdentity))
                    result = SourceCheck::failure(
                        source, tr("Relay loop"),
                        tr("This relay feed already passed through this watcher"));
                const auto waiting = m_checks.take(key);
                // A pass of thousands leaves a table as large behind it.
                if (m_checks.isEmpty())
                    m_checks.squeeze();
                for (const auto &done : waiting)
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
        indexRows();
        Q_EMIT resultsChanged();
    }
}

void LanternicStore::resultArrived(quint64 number, const SourceResult &result)
{
    if (number != m_rowsPass)
        return; // the rows are a later pass's now, which waits for the same check
    // By index, not by a walk: a pass of thousands of sources has as many results.
    const qsizetype at = m_rowOf.value(result.id, -1);
    if (at < 0 || m_results[at].id != result.id)
        return;
    if (m_results[at] != result) {
        m_results[at] = result;
        Q_EMIT resultsChanged();
    }
}

void LanternicStore::indexRows()
{
    m_rowOf.clear();
    m_rowOf.reserve(m_results.size());
    for (qsizetype i = 0; i < m_results.size(); ++i)
        m_rowOf.insert(m_results[i].id, i);
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

    sortLike(sources, collected);

    if (collected != m_results) {
        m_results = std::move(collected);
        indexRows();
        Q_EMIT resultsChanged();
    }
    // The rows hold the same results when each arrived in its place: the pass's own list,
    // as long as the rows, is let go before the pass is published and saved.
    collected = {};
    const QDateTime now = m_clock();
    const std::optional<QDateTime> previousPass = std::exchange(m_lastChecked, now);
    Q_EMIT lastCheckedChanged();

    Q_EMIT passPublished(now, previousPass.value_or(QDateTime()));
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

LanternicStore::Display LanternicStore::display() const
{
    Display display;
    display.providers = providers();
    display.overall = DisplaySummary::overallHealth(m_results, display.providers);
    display.summaryText = DisplaySummary::summaryText(m_results, display.providers);
    display.issueCount =
        DisplaySummary::issueCount(display.providers, display.overall, m_silence, m_clock());
    return display;
}

QList<SilencedItem> LanternicStore::silencedItems() const
{
    return DisplaySummary::silencedItems(m_results, m_silence, m_clock());
}

} // namespace lanternic
