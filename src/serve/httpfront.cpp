#include "serve/httpfront.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QSocketNotifier>
#include <QTcpServer>
#include <QTimer>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#ifdef __linux__
#include <linux/sockios.h>
#endif

namespace lanternic {

namespace {

// Of a refused request's body, no more than this is read (and thrown away) before closing, so
// that the refusal reaches the client before the close resets the connection.
constexpr qsizetype drainBytes = 64 * 1024;
constexpr std::chrono::milliseconds drainTime{2000};

const QByteArray plainText = "text/plain; charset=utf-8";

enum class Parsed { request, badRequest, methodNotAllowed, hasBody };

// Reads a head (up to the blank line, which it ends with) the simple way HTTP/1.x allows:
// "GET /path HTTP/1.1" and one header field a line. path keeps a decoded path when the
// request's is escaped.
Parsed parseHead(QByteArrayView head, HttpRequest &request, QByteArray &path)
{
    qsizetype lineEnd = head.indexOf("\r\n");
    const QByteArrayView line = head.first(lineEnd);
    const qsizetype space = line.indexOf(' ');
    const qsizetype lastSpace = line.lastIndexOf(' ');
    if (space <= 0 || lastSpace <= space)
        return Parsed::badRequest;
    request.method = line.first(space);
    QByteArrayView target = line.sliced(space + 1, lastSpace - space - 1);
    const QByteArrayView version = line.sliced(lastSpace + 1);
    if ((version != "HTTP/1.1" && version != "HTTP/1.0") || !target.startsWith('/'))
        return Parsed::badRequest;
    for (const char c : target) {
        if (c <= ' ' || c >= 0x7f)
            return Parsed::badRequest;
    }
    if (const qsizetype end = target.indexOf('?'); end >= 0)
        target.truncate(end);
    if (const qsizetype end = target.indexOf('#'); end >= 0)
        target.truncate(end);
    if (target.contains('%')) {
        path = QByteArray::fromPercentEncoding(target.toByteArray());
        request.path = path;
    } else {
        request.path = target;
    }
    bool body = false;
    while (lineEnd + 4 <= head.size()) {
        const qsizetype start = lineEnd + 2;
        lineEnd = head.indexOf("\r\n", start);
        const QByteArrayView field = head.sliced(start, lineEnd - start);
        if (field.isEmpty())
            break;
        const qsizetype colon = field.indexOf(':');
        if (colon <= 0 || field.front() == ' ' || field.front() == '\t')
            return Parsed::badRequest;
        const QByteArrayView name = field.first(colon);
        const QByteArrayView value = field.sliced(colon + 1).trimmed();
        if (name.compare("Accept-Encoding", Qt::CaseInsensitive) == 0)
            request.acceptEncoding = value;
        else if (name.compare("If-None-Match", Qt::CaseInsensitive) == 0)
            request.ifNoneMatch = value;
        else if (name.compare("Content-Length", Qt::CaseInsensitive) == 0)
            body = body || value != "0";
        else if (name.compare("Transfer-Encoding", Qt::CaseInsensitive) == 0)
            body = true;
    }
    if (request.method != "GET" && request.method != "HEAD")
        return Parsed::methodNotAllowed;
    return body ? Parsed::hasBody : Parsed::request;
}

// What the kernel still holds of what was sent on a connection, not yet taken by the client.
int unsentBytes(int descriptor)
{
#ifdef SIOCOUTQ
    int queued = 0;
    if (::ioctl(descriptor, SIOCOUTQ, &queued) == 0)
        return queued;
#else
    Q_UNUSED(descriptor);
#endif
    return 0;
}

// The peer's address as bytes, the key of its count of waiting connections.
QByteArray peerAddress(int descriptor)
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    if (::getpeername(descriptor, reinterpret_cast<sockaddr *>(&address), &size) != 0)
        return {};
    if (address.ss_family == AF_INET6) {
        const auto &in6 = reinterpret_cast<const sockaddr_in6 &>(address);
        return QByteArray(reinterpret_cast<const char *>(&in6.sin6_addr), sizeof in6.sin6_addr);
    }
    const auto &in = reinterpret_cast<const sockaddr_in &>(address);
    return QByteArray(reinterpret_cast<const char *>(&in.sin_addr), sizeof in.sin_addr);
}

} // namespace

HttpResponse httpResponse(QByteArrayView statusLine, const QByteArray &type, const QByteArray &body,
                          const HttpHeaders &extra)
{
    QByteArray bytes = "HTTP/1.1 " + statusLine.toByteArray() + "\r\n";
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

struct HttpFront::Connection {
    // flushing: the answer is all sent, but the kernel still holds some of it.
    enum class State { waiting, answering, flushing, draining };

    int descriptor = -1;
    State state = State::waiting;
    QByteArray address; // only while waiting
    std::unique_ptr<QSocketNotifier> notifier;
    QByteArray data;    // the head so far, or the answer
    qsizetype done = 0; // bytes of the answer sent, or of the body thrown away
    bool drainAfter = false;
    QDeadlineTimer deadline;
};

// Accepts for the front: at most a few dozen connections a turn of the loop, so that the
// passes and the connections already open keep turning under a flood.
class HttpFront::Listener : public QTcpServer {
public:
    explicit Listener(HttpFront &front) : QTcpServer(&front), m_front(front) {}

protected:
    void incomingConnection(qintptr descriptor) override
    {
        if (++m_acceptedThisTurn == acceptsPerTurn) {
            setMaxPendingConnections(0);
            pauseAccepting();
            QTimer::singleShot(0, this, [this] {
                m_acceptedThisTurn = 0;
                setMaxPendingConnections(30);
                resumeAccepting();
            });
        }
        m_front.accept(int(descriptor));
    }

private:
    static constexpr int acceptsPerTurn = 64;
    HttpFront &m_front;
    int m_acceptedThisTurn = 0;
};

HttpFront::HttpFront(Answer answer, QObject *parent)
    : QObject(parent), m_answer(std::move(answer)), m_sweep(new QTimer(this))
{
    connect(m_sweep, &QTimer::timeout, this, &HttpFront::sweep);
    setLimits(m_limits);
}

HttpFront::~HttpFront()
{
    for (const auto &[descriptor, connection] : m_connections) {
        connection->notifier.reset();
        ::close(descriptor);
    }
    m_connections.clear();
}

void HttpFront::setLimits(const Limits &limits)
{
    m_limits = limits;
    // Deadlines are kept to a tenth of the shortest.
    const auto shortest = std::min({limits.idle, limits.head, limits.answer, drainTime});
    m_sweep->setInterval(
        std::clamp(shortest / 10, std::chrono::milliseconds(5), std::chrono::milliseconds(250)));
}

quint16 HttpFront::listen(const QHostAddress &address, quint16 port)
{
    auto *listener = new Listener(*this);
    // A client flooding connections that are closed as fast as they come must not fill the
    // queue others' connections wait in.
    listener->setListenBacklogSize(4096);
    if (!listener->listen(address, port)) {
        delete listener;
        return 0;
    }
    // Connections take it from here: an answer left unread holds no more than this.
    ::setsockopt(int(listener->socketDescriptor()), SOL_SOCKET, SO_SNDBUF, &sendBufferBytes,
                 sizeof sendBufferBytes);
#ifdef TCP_DEFER_ACCEPT
    // The kernel hands a connection over once its request is there (or after a second without
    // one): clients connect, then ask, and most connections are then answered in the turn they
    // are accepted instead of waiting in a place of their own.
    const int seconds = 1;
    ::setsockopt(int(listener->socketDescriptor()), IPPROTO_TCP, TCP_DEFER_ACCEPT, &seconds,
                 sizeof seconds);
#endif
    m_listener = listener;
    return listener->serverPort();
}

qintptr HttpFront::listeningDescriptor() const
{
    return m_listener ? m_listener->socketDescriptor() : -1;
}

void HttpFront::accept(int descriptor)
{
    char buffer[maximumHeadBytes + 1];
    const ssize_t received = ::recv(descriptor, buffer, sizeof buffer, MSG_DONTWAIT);
    if (received == 0 || (received < 0 && errno != EAGAIN && errno != EWOULDBLOCK)) {
        ::close(descriptor);
        return;
    }
    const QByteArrayView data(buffer, std::max<ssize_t>(received, 0));
    if (const qsizetype end = data.indexOf("\r\n\r\n"); end >= 0) {
        respond(descriptor, data.first(end + 4), nullptr);
        return;
    }
    if (data.size() > maximumHeadBytes) {
        respond(descriptor, {}, nullptr);
        return;
    }
    Connection *connection = admit(descriptor, true);
    if (!connection)
        return;
    connection->data = data.toByteArray();
    if (!data.isEmpty())
        connection->deadline = QDeadlineTimer(m_limits.head);
}

HttpFront::Connection *HttpFront::admit(int descriptor, bool waiting)
{
    QByteArray address;
    if (waiting) {
        address = peerAddress(descriptor);
        const int places =
            isKnown(address) ? m_limits.waiting : m_limits.waiting - m_limits.reservedForKnown;
        if (m_waiting >= places ||
            m_waitingByAddress.value(address) >= m_limits.waitingPerAddress) {
            ::close(descriptor);
            return nullptr;
        }
        ++m_waiting;
        ++m_waitingByAddress[address];
    } else if (int(m_connections.size()) - m_waiting >= m_limits.answering) {
        ::close(descriptor);
        return nullptr;
    }
    auto connection = std::make_unique<Connection>();
    connection->descriptor = descriptor;
    connection->address = std::move(address);
    connection->state = waiting ? Connection::State::waiting : Connection::State::answering;
    connection->deadline = QDeadlineTimer(waiting ? m_limits.idle : m_limits.answer);
    if (waiting)
        watch(*connection, QSocketNotifier::Read, &HttpFront::readHead);
    if (m_connections.empty())
        m_sweep->start();
    return m_connections.emplace(descriptor, std::move(connection)).first->second.get();
}

void HttpFront::watch(Connection &connection, QSocketNotifier::Type type,
                      void (HttpFront::*handler)(Connection &))
{
    // The notifier replaced may be the one whose signal runs now.
    if (connection.notifier) {
        connection.notifier->setEnabled(false);
        connection.notifier.release()->deleteLater();
    }
    connection.notifier = std::make_unique<QSocketNotifier>(connection.descriptor, type);
    connect(connection.notifier.get(), &QSocketNotifier::activated, this,
            [this, &connection, handler] { (this->*handler)(connection); });
}

void HttpFront::readHead(Connection &connection)
{
    char buffer[maximumHeadBytes + 1];
    const qsizetype had = connection.data.size();
    const ssize_t received =
        ::recv(connection.descriptor, buffer, size_t(maximumHeadBytes + 1 - had), MSG_DONTWAIT);
    if (received < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
        return;
    if (received <= 0) {
        close(connection.descriptor);
        return;
    }
    if (had == 0) // the head's time counts from its first byte
        connection.deadline = std::min(connection.deadline, QDeadlineTimer(m_limits.head));
    connection.data.append(buffer, received);
    const qsizetype end = connection.data.indexOf("\r\n\r\n", std::max<qsizetype>(0, had - 3));
    if (end >= 0)
        respond(connection.descriptor, QByteArrayView(connection.data).first(end + 4), &connection);
    else if (connection.data.size() > maximumHeadBytes)
        respond(connection.descriptor, {}, &connection);
}

void HttpFront::respond(int descriptor, QByteArrayView head, Connection *connection)
{
    if (head.isEmpty()) {
        send(descriptor,
             httpResponse("431 Request Header Fields Too Large", plainText,
                          "request head too large\n")
                 .bytes,
             true, connection);
        return;
    }
    HttpRequest request;
    QByteArray path;
    switch (parseHead(head, request, path)) {
    case Parsed::request:
        remember(connection ? connection->address : peerAddress(descriptor));
        send(descriptor, m_answer(request), false, connection);
        return;
    case Parsed::badRequest:
        send(descriptor, httpResponse("400 Bad Request", plainText, "bad request\n").bytes, true,
             connection);
        return;
    case Parsed::methodNotAllowed:
        send(descriptor,
             httpResponse("405 Method Not Allowed", plainText, "only GET and HEAD\n",
                          {{"Allow", "GET, HEAD"}})
                 .bytes,
             true, connection);
        return;
    case Parsed::hasBody:
        send(descriptor,
             httpResponse("413 Content Too Large", plainText, "requests take no body\n").bytes,
             true, connection);
        return;
    }
}

void HttpFront::send(int descriptor, QByteArray bytes, bool drain, Connection *connection)
{
    ssize_t written =
        ::send(descriptor, bytes.constData(), size_t(bytes.size()), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (written < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
        written = 0;
    if (written < 0) {
        close(descriptor);
        return;
    }
    if (written == bytes.size()) {
        if (drain)
            startDraining(descriptor, connection);
        else
            finishAnswer(descriptor, connection);
        return;
    }
    // A large answer outgrew the socket's buffer: the rest goes as the client takes it.
    connection = holding(descriptor, connection);
    if (!connection)
        return;
    connection->state = Connection::State::answering;
    connection->data = std::move(bytes);
    connection->done = written;
    connection->drainAfter = drain;
    connection->deadline = QDeadlineTimer(m_limits.answer);
    watch(*connection, QSocketNotifier::Write, &HttpFront::writeMore);
}

void HttpFront::writeMore(Connection &connection)
{
    const ssize_t written =
        ::send(connection.descriptor, connection.data.constData() + connection.done,
               size_t(connection.data.size() - connection.done), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (written < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
        return;
    if (written < 0) {
        close(connection.descriptor);
        return;
    }
    connection.done += written;
    if (connection.done < connection.data.size())
        return;
    if (connection.drainAfter)
        startDraining(connection.descriptor, &connection);
    else
        finishAnswer(connection.descriptor, &connection);
}

// Closing a connection whose answer the kernel still holds would leave it there for as long
// as the client cares not to read: it is held until the client, having read it all, closes
// its end (or the kernel has it all delivered), within the answer's time, and reset after
// that. The end of the answer is sent at once, so that a client that reads is done as soon as
// it has read.
void HttpFront::finishAnswer(int descriptor, Connection *connection)
{
    if (unsentBytes(descriptor) == 0) {
        close(descriptor);
        return;
    }
    ::shutdown(descriptor, SHUT_WR);
    const bool answering = connection && connection->state == Connection::State::answering;
    connection = holding(descriptor, connection);
    if (!connection)
        return;
    if (!answering)
        connection->deadline = QDeadlineTimer(m_limits.answer);
    connection->state = Connection::State::flushing;
    connection->data.clear();
    connection->done = 0;
    watch(*connection, QSocketNotifier::Read, &HttpFront::drain);
}

// The refusal is sent; what the client still sends is read into nothing for a moment, since
// closing on unread bytes resets the connection and may destroy the refusal on its way.
void HttpFront::startDraining(int descriptor, Connection *connection)
{
    ::shutdown(descriptor, SHUT_WR);
    connection = holding(descriptor, connection);
    if (!connection)
        return;
    connection->state = Connection::State::draining;
    connection->data.clear();
    connection->done = 0;
    connection->deadline = QDeadlineTimer(drainTime);
    watch(*connection, QSocketNotifier::Read, &HttpFront::drain);
}

void HttpFront::drain(Connection &connection)
{
    char buffer[16 * 1024];
    const ssize_t received = ::recv(connection.descriptor, buffer, sizeof buffer, MSG_DONTWAIT);
    if (received < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
        return;
    connection.done += std::max<ssize_t>(received, 0);
    if (received > 0 && connection.done <= drainBytes)
        return;
    // A client that went with part of its answer still in the kernel leaves it to a reset.
    if (connection.state == Connection::State::flushing && unsentBytes(connection.descriptor) > 0)
        reset(connection.descriptor);
    else
        close(connection.descriptor);
}

// The connection's record once it no longer waits for its head: the waiting one's, given up its
// place, or a new one (nothing when there is no room: the connection is closed).
HttpFront::Connection *HttpFront::holding(int descriptor, Connection *connection)
{
    if (!connection)
        return admit(descriptor, false);
    release(*connection);
    return connection;
}

// Gives up a connection's waiting place.
void HttpFront::release(Connection &connection)
{
    if (connection.state != Connection::State::waiting)
        return;
    connection.state = Connection::State::answering;
    --m_waiting;
    if (--m_waitingByAddress[connection.address] == 0)
        m_waitingByAddress.remove(connection.address);
    connection.address.clear();
}

void HttpFront::close(int descriptor)
{
    const auto found = m_connections.find(descriptor);
    if (found != m_connections.end()) {
        Connection &connection = *found->second;
        release(connection);
        // Deleted later: this may run in the notifier's own signal.
        if (connection.notifier) {
            connection.notifier->setEnabled(false);
            connection.notifier.release()->deleteLater();
        }
        m_connections.erase(found);
        if (m_connections.empty())
            m_sweep->stop();
    }
    ::close(descriptor);
}

void HttpFront::reset(int descriptor)
{
    const linger abortive{1, 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &abortive, sizeof abortive);
    close(descriptor);
}

void HttpFront::remember(const QByteArray &address)
{
    if (m_known.contains(address))
        return;
    if (m_known.size() >= 4096)
        m_knownBefore = std::exchange(m_known, {});
    m_known.insert(address);
}

bool HttpFront::isKnown(const QByteArray &address) const
{
    return m_known.contains(address) || m_knownBefore.contains(address);
}

void HttpFront::sweep()
{
    QList<int> flushed;
    QList<int> expired;
    for (const auto &[descriptor, connection] : m_connections) {
        if (connection->state == Connection::State::flushing && unsentBytes(descriptor) == 0)
            flushed.append(descriptor);
        else if (connection->deadline.hasExpired())
            expired.append(descriptor);
    }
    for (const int descriptor : flushed)
        close(descriptor);
    for (const int descriptor : expired) {
        const Connection::State state = m_connections.at(descriptor)->state;
        if (state == Connection::State::answering || state == Connection::State::flushing)
            reset(descriptor);
        else
            close(descriptor);
    }
}

} // namespace lanternic
