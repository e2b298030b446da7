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

// Hands the HTTP server no more than the limit of connections at once: the rest wait, unread,
// until one closes (and beyond a thousand waiting, new ones are dropped). Requests whose head
// grows past the limit are refused before the HTTP server reads them. A flood of either must
// not harm the poll loop.
class GuardedTcpServer : public QTcpServer {
public:
    static constexpr qsizetype maximumWaiting = 1000;

    using QTcpServer::QTcpServer;

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto *socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        if (m_open < WatchServer::maximumConnections) {
            admit(socket);
        } else if (m_waiting.size() < maximumWaiting) {
            m_waiting.append(socket);
            connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                if (m_waiting.removeOne(socket))
                    socket->deleteLater();
            });
        } else {
            socket->abort();
            socket->deleteLater();
        }
    }

private:
    void admit(QTcpSocket *socket)
    {
        ++m_open;
        disconnect(socket, &QTcpSocket::disconnected, this, nullptr);
        connect(socket, &QTcpSocket::disconnected, this, [this] {
            --m_open;
            if (!m_waiting.isEmpty() && m_open < WatchServer::maximumConnections)
                admitLater(m_waiting.takeFirst());
        });
        // Connected before the HTTP server's own reader, so it sees the bytes first.
        connect(socket, &QTcpSocket::readyRead, this, [socket] { guardHead(socket); });
        addPendingConnection(socket);
    }

    // A waiting connection joins from the event loop, where the HTTP server expects it.
    void admitLater(QTcpSocket *socket)
    {
        QMetaObject::invokeMethod(
            this,
            [this, socket] {
                admit(socket);
                Q_EMIT newConnection();
                if (socket->bytesAvailable() > 0)
                    Q_EMIT socket->readyRead();
            },
            Qt::QueuedConnection);
    }

    static void guardHead(QTcpSocket *socket)
    {
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
    }

    int m_open = 0;
    QList<QTcpSocket *> m_waiting;
};

QByteArray httpDate(const QDateTime &time)
{
    return QLocale::c()
        .toString(time.toUTC(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"))
        .toLatin1();
}

// One answer a connection: clients ask once in a while, and no idle connection then holds one
// of the hundred places (nor leaves an HTTP/1.0 client waiting for the end of the body).
void respond(QHttpServerResponder &responder, QTcpSocket *socket, bool head, const QByteArray &body,
             const QByteArray &type, Status status,
             std::initializer_list<std::pair<QByteArray, QByteArray>> extra = {})
{
    responder.writeStatusLine(status);
    if (!type.isEmpty()) {
        responder.writeHeader("Content-Type", type);
        responder.writeHeader("Content-Length", QByteArray::number(body.size()));
        responder.writeHeader("Cache-Control", "no-cache");
    }
    for (const auto &[name, value] : extra)
        responder.writeHeader(name, value);
    responder.writeHeader("Connection", "close");
    responder.writeBody(head ? QByteArray() : body);
    socket->disconnectFromHost();
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
    // Everything the exposition says changes only here, and making it costs milliseconds.
    m_metrics = prometheusMetrics(m_store, m_statistics);
}

bool WatchServer::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket)
{
    QHttpServerResponder responder = makeResponder(request, socket);
    const bool head = request.method() == QHttpServerRequest::Method::Head;
    if (!head && request.method() != QHttpServerRequest::Method::Get) {
        respond(responder, socket, false, "only GET and HEAD\n", "text/plain; charset=utf-8",
                Status::MethodNotAllowed, {{"Allow", "GET, HEAD"}});
        return true;
    }
    const QString path = request.url().path();
    if (path == QLatin1StringView("/healthz")) {
        const bool ready = m_statistics.passes > 0;
        respond(responder, socket, head, ready ? "ok\n" : "no pass has finished yet\n",
                "text/plain; charset=utf-8", ready ? Status::Ok : Status::ServiceUnavailable);
    } else if (path == QLatin1StringView("/metrics")) {
        respond(responder, socket, head,
                m_metrics.isEmpty() ? prometheusMetrics(m_store, m_statistics) : m_metrics,
                "text/plain; version=0.0.4; charset=utf-8", Status::Ok);
    } else if (path == QLatin1StringView("/lanternic.json")) {
        if (m_relay.isEmpty()) {
            respond(responder, socket, head, "no pass has finished yet\n",
                    "text/plain; charset=utf-8", Status::ServiceUnavailable);
        } else if (request.value("If-None-Match") == m_etag) {
            respond(responder, socket, true, {}, {}, Status::NotModified, {{"ETag", m_etag}});
        } else {
            respond(responder, socket, head, m_relay, "application/json", Status::Ok,
                    {{"ETag", m_etag}, {"Last-Modified", httpDate(*m_statistics.lastPass)}});
        }
    } else {
        respond(responder, socket, head, "not found\n", "text/plain; charset=utf-8",
                Status::NotFound);
    }
    return true;
}

void WatchServer::missingHandler(const QHttpServerRequest &request, QTcpSocket *socket)
{
    QHttpServerResponder responder = makeResponder(request, socket);
    respond(responder, socket, false, "not found\n", "text/plain; charset=utf-8", Status::NotFound);
}

} // namespace lanternic
