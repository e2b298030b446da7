#pragma once

#include "serve/metrics.h"

#include <QAbstractHttpServer>
#include <QByteArray>
#include <QElapsedTimer>
#include <QHostAddress>
#include <chrono>

namespace lanternic {

class LanternicStore;

// Makes Qt use its own event dispatcher rather than GLib's, which spends noticeably more on
// each of a few hundred sockets; call before the application object exists.
void preferLeanEventDispatcher();

// Serves the latest pass over HTTP: /lanternic.json (the relay feed, with ETag and
// Last-Modified), /metrics (Prometheus) and /healthz (200 once a pass has finished). Only GET
// and HEAD; requests whose head is over 8 KiB are refused, no more than 100 connections are
// taken at once, and a connection that has not sent its request in time is closed.
class WatchServer : public QAbstractHttpServer {
    Q_OBJECT

public:
    static constexpr int maximumConnections = 100;
    static constexpr qint64 maximumHeadBytes = 8 * 1024;

    WatchServer(LanternicStore &store, QString relayName, QObject *parent = nullptr);

    // Listens on address and port (0: any free one); the port, or 0 when it cannot listen.
    quint16 listen(const QHostAddress &address, quint16 port);

    const PassStatistics &statistics() const { return m_statistics; }

    // How long a connection may take to send its request (10 s unless set), so that idle
    // connections cannot hold every place.
    std::chrono::milliseconds requestTimeout() const { return m_requestTimeout; }
    void setRequestTimeout(std::chrono::milliseconds timeout) { m_requestTimeout = timeout; }

    // A whole answer, and where its head ends.
    struct Response {
        QByteArray bytes;
        qsizetype headSize = 0;
    };
    // An answer as it is and gzip-compressed, for clients that take gzip.
    struct Encoded {
        Response identity;
        Response gzip;
    };
    // What the answer depends on in a request.
    struct Request {
        QByteArrayView method;
        QByteArrayView path;
        QByteArrayView acceptEncoding;
        QByteArrayView ifNoneMatch;
    };
    // The bytes that answer a request: the whole response, or its head alone for HEAD.
    QByteArray answer(const Request &request) const;

protected:
    bool handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) override;
    void missingHandler(const QHttpServerRequest &request, QTcpSocket *socket) override;

private:
    void passFinished();
    Encoded metricsResponse() const;
    Response route(const Request &request) const;

    LanternicStore &m_store;
    QString m_relayName;
    PassStatistics m_statistics;
    QElapsedTimer m_passClock;
    std::chrono::milliseconds m_requestTimeout = std::chrono::seconds(10);
    Encoded m_relay; // the feed of the last pass, and its tag
    QByteArray m_tag;
    Encoded m_metrics; // the exposition of the last pass, made a moment after it; empty before
};

} // namespace lanternic
