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
#include <zlib.h>

namespace lanternic {

namespace {

using Status = QHttpServerResponder::StatusCode;

QByteArray httpDate(const QDateTime &time)
{
    return QLocale::c()
        .toString(time.toUTC(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"))
        .toLatin1();
}

QByteArray statusLine(Status status)
{
    switch (status) {
    case Status::Ok:
        return "200 OK";
    case Status::NotModified:
        return "304 Not Modified";
    case Status::MethodNotAllowed:
        return "405 Method Not Allowed";
    case Status::RequestHeaderFieldsTooLarge:
        return "431 Request Header Fields Too Large";
    case Status::ServiceUnavailable:
        return "503 Service Unavailable";
    case Status::NotFound:
    default: // the server answers with no other status
        return "404 Not Found";
    }
}

using Headers = QList<std::pair<QByteArray, QByteArray>>;

// One answer a connection: clients ask once in a while, and no idle connection then holds one
// of the hundred places (nor leaves an HTTP/1.0 client waiting for the end of the body).
WatchServer::Response response(Status status, const QByteArray &type, const QByteArray &body,
                               const Headers &extra = {})
{
    QByteArray bytes = "HTTP/1.1 " + statusLine(status) + "\r\n";
    if (!type.isEmpty()) {
        bytes += "Content-Type: " + type +
                 "\r\nContent-Length: " + QByteArray::number(body.size()) +
                 "\r\nCache-Control: no-cache\r\n";
    }
    for (const auto &[name, value] : extra)
        bytes += name + ": " + value + "\r\n";
    bytes += "Connection: close\r\n\r\n";
    const qsizetype headSize = bytes.size();
    return {bytes + body, headSize};
}

// The body as a gzip member, or empty when zlib fails. Made every pass, so at the fastest level,
// which already shrinks an exposition some twenty times.
QByteArray gzip(const QByteArray &data)
{
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY) !=
        Z_OK)
        return {};
    QByteArray out(qsizetype(deflateBound(&stream, uLong(data.size()))), Qt::Uninitialized);
    // zlib reads the input through a pointer to non-const, but does not write to it.
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.constData()));
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef *>(out.data());
    stream.avail_out = uInt(out.size());
    const bool done = deflate(&stream, Z_FINISH) == Z_STREAM_END;
    out.resize(done ? qsizetype(stream.total_out) : 0);
    deflateEnd(&stream);
    return out;
}

// Whether an Accept-Encoding header takes gzip: the first of "gzip", "x-gzip" and "*" it lists
// decides, unless its weight is zero.
bool acceptsGzip(const QByteArray &header)
{
    for (const QByteArray &item : header.split(',')) {
        const QList<QByteArray> parts = item.split(';');
        const QByteArray coding = parts.first().trimmed().toLower();
        if (coding != "gzip" && coding != "x-gzip" && coding != "*")
            continue;
        for (const QByteArray &parameter : parts.mid(1)) {
            const QByteArray weight = parameter.trimmed();
            if (weight.startsWith("q=") && weight.mid(2).toDouble() == 0)
                return false;
        }
        return true;
    }
    return false;
}

// The whole answer in one write; the socket's buffer shares a large one instead of copying it.
void send(QTcpSocket *socket, const WatchServer::Response &answer, bool headOnly = false)
{
    socket->write(headOnly ? answer.bytes.first(answer.headSize) : answer.bytes);
    // Written now rather than on the next turn of the loop, so that most answers close at once.
    socket->flush();
    socket->disconnectFromHost();
}

const QByteArray plainText = "text/plain; charset=utf-8";

QByteArray entityTag(const QByteArray &tag, bool gzipped)
{
    return '"' + tag + (gzipped ? "-gzip\"" : "\"");
}

// An answer of the last pass as it is and gzip-compressed, each with its own tag when the
// answer has one: the two are different bytes, and caches keep them apart by encoding.
WatchServer::Encoded encoded(const QByteArray &type, const QByteArray &body, const QByteArray &tag,
                             Headers extra = {})
{
    extra.emplaceBack("Vary", "Accept-Encoding");
    Headers packed = extra;
    packed.emplaceBack("Content-Encoding", "gzip");
    if (!tag.isEmpty()) {
        extra.emplaceBack("ETag", entityTag(tag, false));
        packed.emplaceBack("ETag", entityTag(tag, true));
    }
    const QByteArray compressed = gzip(body);
    return {response(Status::Ok, type, body, extra),
            compressed.isEmpty() ? response(Status::Ok, type, body, extra)
                                 : response(Status::Ok, type, compressed, packed)};
}

// Takes no more than the limit of connections at once: beyond it the server stops accepting,
// and the rest wait in the kernel's listen queue (or are refused by it once that is full)
// until one closes. Requests whose head grows past the limit are refused before the HTTP
// server reads them. A flood of either must not harm the poll loop.
class GuardedTcpServer : public QTcpServer {
public:
    using QTcpServer::QTcpServer;

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto *socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        if (++m_open == WatchServer::maximumConnections) {
            // Also ends the accepting under way: it stops once the pending ones reach this.
            setMaxPendingConnections(0);
            pauseAccepting();
        }
        connect(socket, &QTcpSocket::disconnected, this, [this] {
            if (m_open-- == WatchServer::maximumConnections) {
                setMaxPendingConnections(WatchServer::maximumConnections);
                resumeAccepting();
            }
        });
        // Connected before the HTTP server's own reader, so it sees the bytes first.
        connect(socket, &QTcpSocket::readyRead, this,
                [socket, head = qint64(0)]() mutable { guardHead(socket, head); });
        addPendingConnection(socket);
    }

private:
    // head: the bytes of the request's head seen so far, or -1 once it was complete.
    static void guardHead(QTcpSocket *socket, qint64 &head)
    {
        if (head < 0)
            return;
        const QByteArray available = socket->peek(socket->bytesAvailable());
        const qsizetype end = available.indexOf("\r\n\r\n");
        head += end < 0 ? available.size() : end;
        if (head > WatchServer::maximumHeadBytes) {
            send(socket, response(Status::RequestHeaderFieldsTooLarge, plainText,
                                  "request head too large\n"));
            socket->readAll();
        }
        if (end >= 0)
            head = -1;
    }

    int m_open = 0;
};

} // namespace

void preferLeanEventDispatcher()
{
    if (qEnvironmentVariableIsEmpty("QT_NO_GLIB"))
        qputenv("QT_NO_GLIB", "1");
}

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
    const QByteArray relay = QJsonDocument(relayDocument(m_store, m_relayName, std::nullopt))
                                 .toJson(QJsonDocument::Compact);
    m_tag = QCryptographicHash::hash(relay, QCryptographicHash::Sha1).toHex().left(20);
    m_relay = encoded("application/json", relay, m_tag,
                      {{"Last-Modified", httpDate(*m_statistics.lastPass)}});
    // Everything either answer says changes only here, and making them costs milliseconds.
    m_metrics = metricsResponse();
}

WatchServer::Encoded WatchServer::metricsResponse() const
{
    return encoded("text/plain; version=0.0.4; charset=utf-8",
                   prometheusMetrics(m_store, m_statistics), {});
}

bool WatchServer::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket)
{
    const bool head = request.method() == QHttpServerRequest::Method::Head;
    if (!head && request.method() != QHttpServerRequest::Method::Get) {
        send(socket, response(Status::MethodNotAllowed, plainText, "only GET and HEAD\n",
                              {{"Allow", "GET, HEAD"}}));
        return true;
    }
    const bool gzipped = acceptsGzip(request.value("Accept-Encoding"));
    const auto pick = [gzipped](const Encoded &answer) -> const Response & {
        return gzipped ? answer.gzip : answer.identity;
    };
    const QString path = request.url().path();
    if (path == QLatin1StringView("/healthz")) {
        const bool ready = m_statistics.passes > 0;
        send(socket,
             response(ready ? Status::Ok : Status::ServiceUnavailable, plainText,
                      ready ? "ok\n" : "no pass has finished yet\n"),
             head);
    } else if (path == QLatin1StringView("/metrics")) {
        if (m_statistics.passes > 0)
            send(socket, pick(m_metrics), head);
        else
            send(socket, pick(metricsResponse()), head);
    } else if (path == QLatin1StringView("/lanternic.json")) {
        if (m_statistics.passes == 0) {
            send(socket,
                 response(Status::ServiceUnavailable, plainText, "no pass has finished yet\n"),
                 head);
        } else if (request.value("If-None-Match").contains(m_tag)) {
            // Either encoding's tag names the same content.
            send(socket,
                 response(Status::NotModified, {}, {},
                          {{"Vary", "Accept-Encoding"}, {"ETag", entityTag(m_tag, gzipped)}}));
        } else {
            send(socket, pick(m_relay), head);
        }
    } else {
        send(socket, response(Status::NotFound, plainText, "not found\n"), head);
    }
    return true;
}

void WatchServer::missingHandler(const QHttpServerRequest &, QTcpSocket *socket)
{
    send(socket, response(Status::NotFound, plainText, "not found\n"));
}

} // namespace lanternic
