#pragma once

#include "config/sourceregistry.h"
#include "model/sourceresult.h"
#include "store/displaysummary.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QObject>
#include <chrono>
#include <functional>
#include <optional>

class QSettings;
class QTimer;

namespace lanternic {

namespace network {
class Session;
}

class AppSettings;
class SilenceStore;
class TransferQueue;
class SleepTimer;
class SourceKindStore;
struct JSONSource;

// The monitoring store: the poll loop, the latest result per source, and the display values
// derived from them. What a pass leaves behind is kept by the pass recorder.
class LanternicStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isRefreshing READ isRefreshing NOTIFY isRefreshingChanged)
    Q_PROPERTY(QDateTime lastChecked READ lastCheckedOrNull NOTIFY lastCheckedChanged)

public:
    using Clock = std::function<QDateTime()>;

    // defaults keeps the check history; session carries every fetch and probe.
    LanternicStore(AppSettings &settings, SilenceStore &silence, SourceKindStore &kinds,
                   QSettings &defaults, network::Session &session, QObject *parent = nullptr);
    ~LanternicStore() override;

    const QList<SourceResult> &results() const { return m_results; }
    // The silences the display values leave out.
    const SilenceStore &silence() const { return m_silence; }
    std::optional<QDateTime> lastChecked() const { return m_lastChecked; }
    bool isRefreshing() const { return m_isRefreshing; }
    // Whether the system reports no network; the header says so.
    bool isOffline() const { return m_isOffline; }
    void setOffline(bool offline);

    // Starts the poll loop, replacing a running one: a pass, a wait of the refresh interval,
    // and again.
    void start();
    // One check pass; done runs when it has finished. Each source's result replaces its row
    // as it comes (resultsChanged); the pass time, passPublished and passFinished come at its
    // end. Passes may overlap: a source already being checked is not fetched
    // again, and a pass that a later one has overtaken publishes nothing at its end.
    void refresh(std::function<void()> done = {});
    // How long the pass published last took.
    std::chrono::microseconds lastPassDuration() const { return m_lastPassDuration; }

    // Display values, derived afresh on every call.
    QList<DisplayProvider> providers() const;
    Health overallHealth() const;
    QString summaryText() const;
    int issueCount(Health health) const;
    QList<SilencedItem> silencedItems() const;
    // The rows, the overall health, the summary and the count of issues at that health,
    // derived once for a reader that wants several: each call above derives the rows again.
    struct Display {
        QList<DisplayProvider> providers;
        Health overall = Health::unknown;
        QString summaryText;
        int issueCount = 0;
    };
    Display display() const;

    // A change to the sources text starts a pass once the text has been still this long, so
    // that a new source shows up at once rather than at the next interval.
    static constexpr std::chrono::seconds sourcesSettleDelay{2};

    // The wait between passes: the interval in minutes, at least one and at most sixty.
    std::chrono::milliseconds pollInterval() const;
    // A wait chosen for this run instead of the stored one (the watcher's --interval).
    void setPollIntervalOverride(std::chrono::minutes interval) { m_intervalOverride = interval; }

    // The watcher this store runs in, named in the relay feeds it publishes; a feed that
    // already passed through it is a loop, and read as an error.
    void setRelayIdentity(const QString &id) { m_relayIdentity = id; }
    const QString &relayIdentity() const { return m_relayIdentity; }

    // Tests replace the clock that passes and display values read.
    void setClock(Clock clock) { m_clock = std::move(clock); }
    QDateTime now() const { return m_clock(); }

Q_SIGNALS:
    void resultsChanged();
    void lastCheckedChanged();
    void isRefreshingChanged();
    void offlineChanged();
    // A pass has published its results: those that keep what passes leave behind keep it now,
    // before passFinished. previousPass is invalid for the first.
    void passPublished(const QDateTime &now, const QDateTime &previousPass);
    void passFinished();

private:
    // Checks source, or waits for the check of it already running.
    void check(const JSONSource &source, std::function<void(const SourceResult &)> done);
    // The rows become the pass's sources, with the results known of them so far.
    void beginPass(quint64 number, const QList<JSONSource> &sources);
    void resultArrived(quint64 number, const SourceResult &result);
    void indexRows();
    void finishPass(quint64 number, const QList<JSONSource> &sources,
                    QList<SourceResult> collected);
    static SourceResult placeholder(const JSONSource &source, const QDateTime &now);
    void setRefreshing(bool refreshing);
    QDateTime lastCheckedOrNull() const { return m_lastChecked.value_or(QDateTime()); }

    AppSettings &m_settings;
    SilenceStore &m_silence;
    SourceKindStore &m_kinds;
    QSettings &m_defaults;
    network::Session &m_session;
    Clock m_clock;

    QList<SourceResult> m_results;
    SourceListCache m_sourceLists;
    QHash<QString, qsizetype> m_rowOf; // row by source id
    std::optional<QDateTime> m_lastChecked;
    bool m_isRefreshing = false;
    int m_running = 0;
    QElapsedTimer m_busy; // since the earliest pass still running started
    quint64 m_passesStarted = 0;
    quint64 m_rowsPass = 0;
    // Checks in flight, by what they fetch and for which source, with everyone waiting for them.
    struct CheckKey {
        QString id;
        QString name;
        QUrl url;
        bool operator==(const CheckKey &) const = default;
        // Ids are as good as unique: hashing the address too (seven parts) cost more than the
        // rare shared id, and removing an entry hashes its neighbours again.
        friend size_t qHash(const CheckKey &key, size_t seed = 0) { return qHash(key.id, seed); }
    };
    QHash<CheckKey, QList<std::function<void(const SourceResult &)>>> m_checks;
    std::chrono::microseconds m_lastPassDuration{0};
    bool m_isOffline = false;
    std::optional<std::chrono::minutes> m_intervalOverride;
    QString m_relayIdentity;
    TransferQueue *m_queue;

    SleepTimer *m_pollTimer = nullptr;
    QTimer *m_sourcesSettled;
    quint64 m_pollGeneration = 0;
};

} // namespace lanternic
