#include "serve/watchserver.h"

#include "store/lanternicstore.h"
#include "store/relaydocument.h"

#include <QCryptographicHash>
#include <QHttpServerRequest>
#include <QHttpServerResponder>
#include <QJsonDocument>
#include <QLocale>
#include <QSocketNotifier>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>
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

// The next piece of rest up to separator, trimmed; rest keeps what follows it.
QByteArrayView nextPiece(QByteArrayView &rest, char separator)
{
    const qsizetype end = rest.indexOf(separator);
    const QByteArrayView piece = end < 0 ? rest : rest.first(end);
    rest = end < 0 ? QByteArrayView() : rest.sliced(end + 1);
    return piece.trimmed();
}

// Whether an Accept-Encoding header takes gzip: the first of "gzip", "x-gzip" and "*" it lists
// decides, unless its weight is zero. Read in place, as it is for every request.
bool acceptsGzip(QByteArrayView header)
{
    while (!header.isEmpty()) {
        QByteArrayView parameters = nextPiece(header, ',');
        const QByteArrayView coding = nextPiece(parameters, ';');
        if (coding.compare("gzip", Qt::CaseInsensitive) != 0 &&
            coding.compare("x-gzip", Qt::CaseInsensitive) != 0 && coding != "*")
            continue;
        while (!parameters.isEmpty()) {
            const QByteArrayView weight = nextPiece(parameters, ';');
            if (weight.startsWith("q=") && weight.sliced(2).toDouble() == 0)
                return false;
        }
        return true;
    }
    return false;
}

// The whole answer in one write; the socket's buffer shares a large one instead of copying it.
void send(QTcpSocket *socket, const QByteArray &answer)
{
    socket->write(answer);
    // Written now rather than on the next turn of the loop, so that most answers close at once.
    socket->flush();
    socket->disconnectFromHost();
}

const QByteArray plainText = "text/plain; charset=utf-8";
const QByteArray metricsType = "text/plain; version=0.0.4; charset=utf-8";

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

// The request in a head that came whole, read the simple way: "GET /path HTTP/1.1" and header
// lines. Nothing for anything else (other methods, escapes, folded lines), which the HTTP
// server then reads.
std::optional<WatchServer::Request> simpleRequest(QByteArrayView head)
{
    qsizetype lineEnd = head.indexOf("\r\n");
    const QByteArrayView line = head.first(lineEnd);
    const qsizetype space = line.indexOf(' ');
    const qsizetype lastSpace = line.lastIndexOf(' ');
    if (space < 0 || lastSpace <= space)
        return std::nullopt;
    WatchServer::Request request;
    request.method = line.first(space);
    request.path = line.sliced(space + 1, lastSpace - space - 1);
    const QByteArrayView version = line.sliced(lastSpace + 1);
    if ((request.method != "GET" && request.method != "HEAD") ||
        (version != "HTTP/1.1" && version != "HTTP/1.0") || !request.path.startsWith('/'))
        return std::nullopt;
    for (const char c : request.path) {
        if (c <= ' ' || c >= 0x7f || c == '%' || c == '#')
            return std::nullopt;
    }
    if (const qsizetype query = request.path.indexOf('?'); query >= 0)
        request.path.truncate(query);
    while (lineEnd + 2 < head.size()) {
        const qsizetype start = lineEnd + 2;
        lineEnd = head.indexOf("\r\n", start);
        const QByteArrayView field = head.sliced(start, lineEnd - start);
        const qsizetype colon = field.indexOf(':');
        if (colon <= 0 || field.front() == ' ' || field.front() == '\t')
            return std::nullopt;
        const QByteArrayView name = field.first(colon);
        const QByteArrayView value = field.sliced(colon + 1).trimmed();
        if (name.compare("Accept-Encoding", Qt::CaseInsensitive) == 0)
            request.acceptEncoding = value;
        else if (name.compare("If-None-Match", Qt::CaseInsensitive) == 0)
            request.ifNoneMatch = value;
    }
    return request;
}

// Takes no more than the limit of connections at once: beyond it the server stops accepting,
// and the rest wait in the kernel's listen queue (or are refused by it once that is full)
// until one closes. Requests whose head grows past the limit are refused before the HTTP
// server reads them. A flood of either must not harm the poll loop.
//
// Most requests come whole in one packet. Those are answered straight on the descriptor, as
// soon as the packet is there: a socket object, its notifiers and the HTTP server's parser
// would cost several times what the answer does. Anything else goes to the HTTP server.
class GuardedTcpServer : public QTcpServer {
public:
    explicit GuardedTcpServer(WatchServer &server) : QTcpServer(&server), m_server(server) {}

protected:
    void incomingConnection(qintptr descriptor) override
    {
        if (++m_acceptedThisTurn == acceptsPerTurn) {
            // Lets the rest of the loop (other clients, the passes) turn before taking more.
            holdAccepting();
            QTimer::singleShot(0, this, [this] {
                m_acceptedThisTurn = 0;
                if (m_open < WatchServer::maximumConnections)
                    goOnAccepting();
            });
        }
        switch (answerAtOnce(int(descriptor))) {
        case Arrival::answered:
            return;
        case Arrival::nothingYet:
            waitForRequest(descriptor);
            return;
        case Arrival::other:
            handOver(descriptor);
            return;
        }
    }

private:
    enum class Arrival { answered, nothingYet, other };

    // Whether the connection was answered (or had ended) at once; when not, nothing of it
    // was read.
    Arrival answerAtOnce(int descriptor)
    {
        char buffer[4096];
        const ssize_t peeked = ::recv(descriptor, buffer, sizeof buffer, MSG_PEEK | MSG_DONTWAIT);
        if (peeked < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            return Arrival::nothingYet;
        if (peeked <= 0) {
            ::close(descriptor);
            return Arrival::answered;
        }
        // Only a head with nothing after it: what follows one is a body, or a second request.
        if (!QByteArrayView(buffer, peeked).endsWith("\r\n\r\n"))
            return Arrival::other;
        const auto request = simpleRequest(QByteArrayView(buffer, peeked - 2));
        if (!request)
            return Arrival::other;
        const QByteArray bytes = m_server.answer(*request);
        // Read, so that closing does not reset the connection under the answer.
        if (::recv(descriptor, buffer, size_t(peeked), MSG_DONTWAIT) == peeked) {
            ssize_t written =
                ::send(descriptor, bytes.data(), size_t(bytes.size()), MSG_DONTWAIT | MSG_NOSIGNAL);
            if (written < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
                written = 0;
            if (written >= 0 && written < bytes.size()) {
                // A large body outgrew the socket's buffer: a socket object writes the rest.
                QTcpSocket *socket = adopt(descriptor);
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
                socket->write(bytes.sliced(written));
                socket->disconnectFromHost();
                return Arrival::answered;
            }
        }
        ::close(descriptor);
        return Arrival::answered;
    }

    // Reads the request once it comes, or closes the connection if it does not come in time.
    void waitForRequest(qintptr descriptor)
    {
        take();
        auto *notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
        // Whichever comes first, the request or the time-out, ends the waiting.
        const auto stopWaiting = [this, notifier] {
            if (!notifier->isEnabled())
                return false;
            notifier->setEnabled(false);
            notifier->deleteLater();
            release();
            return true;
        };
        connect(notifier, &QSocketNotifier::activated, this, [this, stopWaiting, descriptor] {
            if (stopWaiting() && answerAtOnce(int(descriptor)) != Arrival::answered)
                handOver(descriptor);
        });
        QTimer::singleShot(m_server.requestTimeout(), notifier, [stopWaiting, descriptor] {
            if (stopWaiting())
                ::close(int(descriptor));
        });
    }

    // The connection to the HTTP server, with its head's size watched.
    void handOver(qintptr descriptor)
    {
        QTcpSocket *socket = adopt(descriptor);
        // Connected before the HTTP server's own reader, so it sees the bytes first.
        connect(socket, &QTcpSocket::readyRead, this,
                [socket, head = qint64(0)]() mutable { guardHead(socket, head); });
        // An answered connection is already closing, and finishes writing.
        QTimer::singleShot(m_server.requestTimeout(), socket, [socket] {
            if (socket->state() == QAbstractSocket::ConnectedState)
                socket->abort();
        });
        addPendingConnection(socket);
    }

    QTcpSocket *adopt(qintptr descriptor)
    {
        auto *socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        take();
        connect(socket, &QTcpSocket::disconnected, this, &GuardedTcpServer::release);
        return socket;
    }

    // A place among the open connections.
    void take()
    {
        if (++m_open == WatchServer::maximumConnections)
            holdAccepting();
    }

    void release()
    {
        if (m_open-- == WatchServer::maximumConnections && m_acceptedThisTurn < acceptsPerTurn)
            goOnAccepting();
    }

    // Also ends the accepting under way: it stops once the pending ones reach the maximum.
    void holdAccepting()
    {
        setMaxPendingConnections(0);
        pauseAccepting();
    }

    void goOnAccepting()
    {
        setMaxPendingConnections(WatchServer::maximumConnections);
        resumeAccepting();
    }

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
                                  "request head too large\n")
                             .bytes);
            socket->readAll();
        }
        if (end >= 0)
            head = -1;
    }

    static constexpr int acceptsPerTurn = 64;

    const WatchServer &m_server;
    int m_open = 0;
    int m_acceptedThisTurn = 0;
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
    auto *tcp = new GuardedTcpServer(*this);
    tcp->setListenBacklogSize(256);
    if (!tcp->listen(address, port)) {
        delete tcp;
        return 0;
    }
#ifdef TCP_DEFER_ACCEPT
    // The kernel hands a connection over once its request is there (or after a second without
    // one): clients connect, then ask, and most connections are then answered in the turn they
    // are accepted instead of waiting on a notifier of their own, at half the cost.
    const int seconds = 1;
    ::setsockopt(int(tcp->socketDescriptor()), IPPROTO_TCP, TCP_DEFER_ACCEPT, &seconds,
                 sizeof seconds);
#endif
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
    // The exposition is over ten times the feed: written, then compressed, on the next two turns
    // of the loop, so that the answers in flight wait for neither step in one piece. Until then
    // /metrics answers as it did before this pass.
    QTimer::singleShot(0, this, [this] {
        const QByteArray text = prometheusMetrics(m_store, m_statistics);
        QTimer::singleShot(0, this, [this, text] { m_metrics = encoded(metricsType, text, {}); });
    });
}

WatchServer::Encoded WatchServer::metricsResponse() const
{
    return encoded(metricsType, prometheusMetrics(m_store, m_statistics), {});
}

QByteArray WatchServer::answer(const Request &request) const
{
    const Response whole = route(request);
    return request.method == "HEAD" ? whole.bytes.first(whole.headSize) : whole.bytes;
}

WatchServer::Response WatchServer::route(const Request &request) const
{
    if (request.method != "GET" && request.method != "HEAD") {
        return response(Status::MethodNotAllowed, plainText, "only GET and HEAD\n",
                        {{"Allow", "GET, HEAD"}});
    }
    const bool gzipped = acceptsGzip(request.acceptEncoding);
    const auto pick = [gzipped](const Encoded &answer) {
        return gzipped ? answer.gzip : answer.identity;
    };
    const bool ready = m_statistics.passes > 0;
    if (request.path == "/healthz") {
        return response(ready ? Status::Ok : Status::ServiceUnavailable, plainText,
                        ready ? "ok\n" : "no pass has finished yet\n");
    }
    if (request.path == "/metrics")
        return pick(m_metrics.identity.bytes.isEmpty() ? metricsResponse() : m_metrics);
    if (request.path != "/lanternic.json")
        return response(Status::NotFound, plainText, "not found\n");
    if (!ready)
        return response(Status::ServiceUnavailable, plainText, "no pass has finished yet\n");
    if (request.ifNoneMatch.contains(m_tag)) {
        // Either encoding's tag names the same content.
        return response(Status::NotModified, {}, {},
                        {{"Vary", "Accept-Encoding"}, {"ETag", entityTag(m_tag, gzipped)}});
    }
    return pick(m_relay);
}

bool WatchServer::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket)
{
    using Method = QHttpServerRequest::Method;
    const QByteArrayView method = request.method() == Method::Get    ? "GET"
                                  : request.method() == Method::Head ? "HEAD"
                                                                     : "";
    const QByteArray path = request.url().path().toUtf8();
    const QByteArray acceptEncoding = request.value("Accept-Encoding");
    const QByteArray ifNoneMatch = request.value("If-None-Match");
    send(socket, answer({method, path, acceptEncoding, ifNoneMatch}));
    return true;
}

void WatchServer::missingHandler(const QHttpServerRequest &, QTcpSocket *socket)
{
    send(socket, response(Status::NotFound, plainText, "not found\n").bytes);
}

} // namespace lanternic
