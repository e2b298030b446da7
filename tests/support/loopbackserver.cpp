#include "support/loopbackserver.h"

#include <QTcpSocket>
#include <QTimer>

LoopbackServer::LoopbackServer(QObject *parent) : QObject(parent)
{
    m_server.listen(QHostAddress::LocalHost);
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

void LoopbackServer::route(const QByteArray &path, Response response)
{
    m_routes.insert(path, std::move(response));
}

QUrl LoopbackServer::url(const QByteArray &path) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(port()).arg(QString::fromUtf8(path)));
}

void LoopbackServer::serve(QTcpSocket *socket)
{
    QByteArray request = socket->property("request").toByteArray() + socket->readAll();
    const qsizetype headerEnd = request.indexOf("\r\n\r\n");
    if (headerEnd < 0) {
        socket->setProperty("request", request);
        return;
    }
    socket->setProperty("request", request.mid(headerEnd + 4));
    const QList<QByteArray> lines = request.left(headerEnd).split('\n');
    const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
    const QByteArray target = requestLine.value(1);
    m_requests.append(target);
    for (const QByteArray &line : lines) {
        if (line.toLower().startsWith("user-agent:"))
            m_userAgents.append(line.mid(11).trimmed());
    }

    const QByteArray path =
        target.left(target.indexOf('?') < 0 ? target.size() : target.indexOf('?'));
    const Response response =
        m_routes.value(path, Response{404, QByteArrayLiteral("{\"error\":\"not found\"}"), {}});
    if (response.silent)
        return;
    QByteArray reply = "HTTP/1.1 " + QByteArray::number(response.status) + " Status\r\n";
    for (const auto &[name, value] : response.headers)
        reply += name + ": " + value + "\r\n";
    reply += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
    reply += "Connection: close\r\n\r\n";
    auto send = [socket, data = reply + response.body] {
        socket->write(data);
        socket->disconnectFromHost();
    };
    if (response.delayMs > 0)
        QTimer::singleShot(response.delayMs, socket, send);
    else
        send();
}
