#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

// A tiny HTTP/1.1 server on 127.0.0.1 for tests: each path answers with a canned response.
class LoopbackServer : public QObject {
    Q_OBJECT
public:
    struct Response {
        int status = 200;
        QByteArray body;
        QList<std::pair<QByteArray, QByteArray>> headers;
        bool silent = false; // accept the request but never answer
        int delayMs = 0;
    };

    explicit LoopbackServer(QObject *parent = nullptr);

    void route(const QByteArray &path, Response response);
    QUrl url(const QByteArray &path) const;
    quint16 port() const { return m_server.serverPort(); }
    // Request targets (path and query) in the order they arrived.
    const QList<QByteArray> &requests() const { return m_requests; }
    const QList<QByteArray> &userAgents() const { return m_userAgents; }

private:
    void serve(class QTcpSocket *socket);

    QTcpServer m_server;
    QHash<QByteArray, Response> m_routes;
    QList<QByteArray> m_requests;
    QList<QByteArray> m_userAgents;
};
