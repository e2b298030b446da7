#include "serve/watchserver.h"

#include "store/lanternicstore.h"
#include "store/relaydocument.h"

#include <QCryptographicHash>
#include <QHttpServerRequest>
#include <QHttpServerResponder>
#include <QJsonDocument>
#include <QLocale>
#include <QTcpServer>
#include <QTcpSocket>

namespace lanternic {

namespace {

using Status = QHttpServerResponder::StatusCode;

// Refuses connections beyond the limit, and requests whose head grows past the limit, before
// the HTTP server reads them: a flood of either must not harm the poll loop.
class GuardedTcpServer : public QTcpServer {
public:
    using QTcpServer::QTcpServer;

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto *socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        if (m_open >= WatchServer::maximumConnections) {
            socket->abort();
            socket->deleteLater();
            return;
        }
        ++m_open;
        connect(socket, &QTcpSocket::disconnected, this, [this] { --m_open; });
        // Connected before the HTTP server's own reader, so it sees the bytes first.
        connect(socket, &QTcpSocket::readyRead, this, [socket] {
            qint64 head = socket->property("headBytes").toLongLong();
            if (head < 0)
                return; // this request's head was complete
            const QByteArray available = socket->peek(socket->bytesAvailable());
            const qsizetype end = available.indexOf("\r\n\r\n");
            head += end < 0 ? available.size() : end;
            socket->setProperty("headBytes", end < 0 ? head : -1);
            if (head > WatchServer::maximumHeadBytes) {
                socket->write("HTTP/1.1 431 Request Header Fields Too Large\r\n"
                              "Content-Length: 0\r\nConnection: close\r\n\r\n");
                socket->disconnectFromHost();
                socket->readAll();
            }
        });
        addPendingConnection(socket);
    }

private:
    int m_open = 0;
};

QByteArray httpDate(const QDateTime &time)
{
    return QLocale::c()
        .toString(time.toUTC(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"))
        .toLatin1();
}

void respond(QHttpServerResponder &responder, bool head, const QByteArray &body,
             const QByteArray &type, Status status,
             std::initializer_list<std::pair<QByteArray, QByteArray>> extra = {})
{
    responder.writeStatusLine(status);
    responder.writeHeader("Content-Type", type);
    responder.writeHeader("Content-Length", QByteArray::number(body.size()));
    responder.writeHeader("Cache-Control", "no-cache");
    for (const auto &[name, value] : extra)
        responder.writeHeader(name, value);
    responder.writeBody(head ? QByteArray() : body);
}

} // namespace

WatchServer::WatchServer(LanternicStore &store, QString relayName, QObject *parent)
    : QAbstractHttpServer(parent), m_store(store), m_relayName(std::move(relayName))
{
    connect(&store, &LanternicStore::isRefreshingChanged, this, [this] {
        if (m_store.isRefreshing() && !m_passClock.isValid())
            m_passClock.start();
    });
    connect(&store, &LanternicStore::passFinished, this, &WatchServer::passFinished);
}

quint16 WatchServer::listen(const QHostAddress &address, quint16 port)
{
    auto *tcp = new GuardedTcpServer(this);
    tcp->setListenBacklogSize(256);
    if (!tcp->listen(address, port)) {
        delete tcp;
        return 0;
    }
    bind(tcp);
    return tcp->serverPort();
}

void WatchServer::passFinished()
{
    ++m_statistics.passes;
    m_statistics.lastPass = m_store.lastChecked();
    m_statistics.lastDurationSeconds =
        m_passClock.isValid() ? double(m_passClock.nsecsElapsed()) / 1e9 : 0.0;
    m_passClock.invalidate();
    m_relay = QJsonDocument(relayDocument(m_store, m_relayName, std::nullopt))
                  .toJson(QJsonDocument::Compact);
    m_etag =
        '"' + QCryptographicHash::hash(m_relay, QCryptographicHash::Sha1).toHex().left(20) + '"';
}

bool WatchServer::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket)
{
    QHttpServerResponder responder = makeResponder(request, socket);
    const bool head = request.method() == QHttpServerRequest::Method::Head;
    if (!head && request.method() != QHttpServerRequest::Method::Get) {
        respond(responder, false, "only GET and HEAD\n", "text/plain; charset=utf-8",
                Status::MethodNotAllowed, {{"Allow", "GET, HEAD"}});
        return true;
    }
    const QString path = request.url().path();
    if (path == QLatin1StringView("/healthz")) {
        const bool ready = m_statistics.passes > 0;
        respond(responder, head, ready ? "ok\n" : "no pass has finished yet\n",
                "text/plain; charset=utf-8", ready ? Status::Ok : Status::ServiceUnavailable);
    } else if (path == QLatin1StringView("/metrics")) {
        respond(responder, head, prometheusMetrics(m_store, m_statistics),
                "text/plain; version=0.0.4; charset=utf-8", Status::Ok);
    } else if (path == QLatin1StringView("/lanternic.json")) {
        if (m_relay.isEmpty()) {
            respond(responder, head, "no pass has finished yet\n", "text/plain; charset=utf-8",
                    Status::ServiceUnavailable);
        } else if (request.value("If-None-Match") == m_etag) {
            responder.writeStatusLine(Status::NotModified);
            responder.writeHeader("ETag", m_etag);
            responder.writeBody(QByteArray());
        } else {
            respond(responder, head, m_relay, "application/json", Status::Ok,
                    {{"ETag", m_etag}, {"Last-Modified", httpDate(*m_statistics.lastPass)}});
        }
    } else {
        respond(responder, head, "not found\n", "text/plain; charset=utf-8", Status::NotFound);
    }
    return true;
}

void WatchServer::missingHandler(const QHttpServerRequest &request, QTcpSocket *socket)
{
    QHttpServerResponder responder = makeResponder(request, socket);
    respond(responder, false, "not found\n", "text/plain; charset=utf-8", Status::NotFound);
}

} // namespace lanternic
