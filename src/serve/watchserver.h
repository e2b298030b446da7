#pragma once

#include "present/changefeed.h"
#include "present/metrics.h"
#include "serve/httpfront.h"

#include <QByteArray>
#include <QHostAddress>
#include <QObject>
#include <functional>
#include <optional>

class QTimer;

namespace lanternic {

class LanternicStore;

// Makes Qt use its own event dispatcher rather than GLib's, which spends noticeably more on
// each of a few hundred sockets; call before the application object exists.
void preferLeanEventDispatcher();

// Serves the latest pass over HTTP: /lanternic.json (the relay feed), /api/v2/summary.json
// (the same view as a Statuspage summary) and /feed.atom (the last changes between passes, as
// an Atom feed), all with ETag and Last-Modified, /metrics
// (Prometheus), /healthz (200 while passes keep coming) and / (an index of those). Connections go
// through an HttpFront, which keeps hostile clients at bay.
class WatchServer : public QObject {
    Q_OBJECT

public:
    WatchServer(LanternicStore &store, QString relayName, QObject *parent = nullptr);

    // Listens on address and port (0: any free one); the port, or 0 when it cannot listen.
    quint16 listen(const QHostAddress &address, quint16 port);

    HttpFront &front() { return *m_front; }
    const PassStatistics &statistics() const { return m_statistics; }
    // What forwarding has done, for the metrics, which are made again at once.
    void setForwardCounts(const ForwardCounts &counts);

    // An answer as it is and gzip-compressed, for clients that take gzip.
    struct Encoded {
        HttpResponse identity;
        HttpResponse gzip;
    };
    // The bytes that answer a request: the whole response, or its head alone for HEAD.
    QByteArray answer(const HttpRequest &request) const;

    // Milliseconds on a clock that only moves forward, whatever the wall clock does: what
    // the age of the last pass is measured on. Tests move their own.
    void setMonotonicClock(std::function<qint64()> clock);

private:
    void passFinished();
    void publish();
    void publishMetrics();
    void publishDocuments();
    // Keeps what changed since the last pass among the latest changes.
    void recordChanges();
    void publishChangeFeed();
    HttpResponse route(const HttpRequest &request) const;
    bool isStale() const;

    LanternicStore &m_store;
    QString m_relayName;
    HttpFront *m_front;
    QTimer *m_republish;
    PassStatistics m_statistics;
    std::function<qint64()> m_monotonic;
    std::optional<qint64> m_lastPassAt; // on the monotonic clock
    // A document made from the last pass, and its tag.
    struct Document {
        Encoded answer;
        QByteArray tag;
    };
    HttpResponse document(const Document &published, const HttpRequest &request,
                          bool gzipped) const;
    Document m_relay;
    Document m_summary;
    Document m_changeFeed;
    ChangeNews::Follower m_passes;
    QList<ChangeFeed::Entry> m_changes; // newest first
    static constexpr qsizetype maximumChanges = 100;
    Encoded m_metrics; // the exposition of the last pass, made a moment after it; empty before
};

} // namespace lanternic
