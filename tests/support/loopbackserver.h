#pragma once

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QUrl>
#include <memory>

class QTcpServer;
class QTcpSocket;

// A tiny HTTP/1.1 server on 127.0.0.1 for tests: each path answers with a canned response.
// Given a certificate and key (PEM files) it speaks TLS.
class LoopbackServer : public QObject {
    Q_OBJECT
public:
    struct Response {
        int status = 200;
        QByteArray body;
        QList<std::pair<QByteArray, QByteArray>> headers;
        bool silent = false; // accept the request but never answer
        int delayMs = 0;
        int dripMs = 0;            // send the body a byte at a time, this far apart
        bool stall = false;        // send the headers and nothing more
        bool reset = false;        // send half the body, then drop the connection
        bool contentLength = true; // without it the body ends when the connection closes
        bool keepAlive = false;    // leave the connection open for the next request
    };

    explicit LoopbackServer(QObject *parent = nullptr);
    // On another address of this machine, such as one added to loopback in a test's own
    // network namespace.
    // On a given port (0: any free one), to stand for a receiver that comes up late.
    explicit LoopbackServer(const QHostAddress &address, quint16 port = 0,
                            QObject *parent = nullptr);
    LoopbackServer(const QString &certificateFile, const QString &keyFile,
                   QObject *parent = nullptr);
    ~LoopbackServer() override;

    void route(const QByteArray &path, Response response);
    QUrl url(const QByteArray &path) const;
    quint16 port() const;
    // Request targets (path and query) in the order they arrived, and their headers.
    QList<QByteArray> requests() const { return each(&Request::target); }
    QList<QByteArray> userAgents() const { return header("user-agent"); }
    QList<QByteArray> hosts() const { return header("host"); }
    // Every request whole, in the order they arrived.
    struct Request {
        QByteArray method;
        QByteArray target;
        QList<std::pair<QByteArray, QByteArray>> headers; // names in lower case
        QByteArray body;

        QByteArray header(const QByteArray &name) const;
    };
    const QList<Request> &received() const { return m_received; }
    // The most connections that were open at once.
    int mostOpenAtOnce() const { return m_mostOpen; }

private:
    QList<QByteArray> each(QByteArray Request::*part) const;
    QList<QByteArray> header(const QByteArray &name) const;
    void listen(const QHostAddress &address, quint16 port = 0);
    void serve(QTcpSocket *socket);
    void send(QTcpSocket *socket, const Response &response);

    std::unique_ptr<QTcpServer> m_server;
    QString m_host = QStringLiteral("127.0.0.1");
    bool m_tls = false;
    QHash<QByteArray, Response> m_routes;
    QList<Request> m_received;
    int m_open = 0;
    int m_mostOpen = 0;
};
