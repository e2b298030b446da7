#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QSocketNotifier>
#include <chrono>
#include <functional>
#include <memory>
#include <unordered_map>

class QHostAddress;
class QTcpServer;
class QTimer;

namespace lanternic {

// What an answer may depend on in a request.
struct HttpRequest {
    QByteArrayView method;
    QByteArrayView path; // decoded, without the query
    QByteArrayView acceptEncoding;
    QByteArrayView ifNoneMatch;
};

// A whole HTTP/1.1 answer that closes its connection, and where its head ends.
struct HttpResponse {
    QByteArray bytes;
    qsizetype headSize = 0;
};
using HttpHeaders = QList<std::pair<QByteArray, QByteArray>>;
// statusLine: "200 OK"; no type means no body.
HttpResponse httpResponse(QByteArrayView statusLine, const QByteArray &type, const QByteArray &body,
                          const HttpHeaders &extra = {});

// The network side of a server that answers GET and HEAD from memory, built for hostile
// clients. Every connection gets one answer and is closed. A request that came whole by the
// time its connection is accepted (as good clients send it) is answered in that turn and holds
// nothing. Any other waits for its head in a place of its own: there are at most
// `Limits::waiting` places, at most `Limits::waitingPerAddress` for one client address, and a
// connection that finds none is closed at once, so that slow or idle clients cannot keep
// others out. The head must come whole within `Limits::head` of its first byte (and some byte
// within `Limits::idle`), in at most 8 KiB. Requests with a body and methods other than GET
// and HEAD are answered from the head alone; their bodies are read into nothing and never
// past 64 KiB. An answer the client does not take within `Limits::answer`, including what
// the kernel still holds of it, is dropped with a reset, which frees the kernel's copy too.
class HttpFront : public QObject {
public:
    using Answer = std::function<QByteArray(const HttpRequest &)>;

    struct Limits {
        int waiting = 128;
        int waitingPerAddress = 16;
        // Of the waiting places, these only for addresses whose requests came whole before:
        // clients that never finish a head, from however many addresses, leave them free.
        int reservedForKnown = 32;
        // Answers being written, and connections being closed after a refusal: these hold
        // a few hundred bytes each, the answers' bytes being shared with the server's own.
        int answering = 1024;
        std::chrono::milliseconds idle{10'000};
        std::chrono::milliseconds head{5'000};
        std::chrono::milliseconds answer{10'000};
    };
    static constexpr qsizetype maximumHeadBytes = 8 * 1024;
    // What the kernel may hold of one answer for a client that does not read it.
    static constexpr int sendBufferBytes = 32 * 1024;

    explicit HttpFront(Answer answer, QObject *parent = nullptr);
    ~HttpFront() override;

    // Listens on address and port (0: any free one); the port, or 0 when it cannot listen.
    quint16 listen(const QHostAddress &address, quint16 port);
    qintptr listeningDescriptor() const;

    const Limits &limits() const { return m_limits; }
    void setLimits(const Limits &limits);

    // Connections held now: waiting for their head, being answered or being closed.
    int openConnections() const { return int(m_connections.size()); }

private:
    struct Connection;
    class Listener;
    enum class Outcome { answered, closed };

    void accept(int descriptor);
    Connection *admit(int descriptor, bool waiting);
    void watch(Connection &connection, QSocketNotifier::Type type,
               void (HttpFront::*handler)(Connection &));
    void readHead(Connection &connection);
    void respond(int descriptor, QByteArrayView head, Connection *connection);
    void send(int descriptor, QByteArray bytes, bool drain, Connection *connection);
    void writeMore(Connection &connection);
    void drain(Connection &connection);
    void startDraining(int descriptor, Connection *connection);
    void finishAnswer(int descriptor, Connection *connection);
    void close(int descriptor);
    void reset(int descriptor);
    void remember(const QByteArray &address);
    bool isKnown(const QByteArray &address) const;
    void release(Connection &connection);
    Connection *holding(int descriptor, Connection *connection);
    void sweep();

    Answer m_answer;
    Limits m_limits;
    Listener *m_listener = nullptr;
    QTimer *m_sweep;
    std::unordered_map<int, std::unique_ptr<Connection>> m_connections;
    QHash<QByteArray, int> m_waitingByAddress;
    int m_waiting = 0;
    // Addresses whose requests came whole, in two generations so that the set stays bounded
    // and an address seen lately is kept.
    QSet<QByteArray> m_known;
    QSet<QByteArray> m_knownBefore;
};

} // namespace lanternic
