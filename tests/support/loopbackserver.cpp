#include "support/loopbackserver.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QTimer>
#include <algorithm>

namespace {

class TlsServer : public QTcpServer {
public:
    TlsServer(const QString &certificateFile, const QString &keyFile)
    {
        QFile certificate(certificateFile);
        QFile key(keyFile);
        if (!certificate.open(QIODevice::ReadOnly) || !key.open(QIODevice::ReadOnly))
            qFatal("cannot read the test certificate");
        m_certificate = QSslCertificate(&certificate, QSsl::Pem);
        m_key = QSslKey(&key, QSsl::Rsa, QSsl::Pem);
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto *socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setLocalCertificate(m_certificate);
        socket->setPrivateKey(m_key);
        addPendingConnection(socket);
        socket->startServerEncryption();
    }

private:
    QSslCertificate m_certificate;
    QSslKey m_key;
};

} // namespace

LoopbackServer::LoopbackServer(QObject *parent)
    : QObject(parent), m_server(std::make_unique<QTcpServer>())
{
    listen(QHostAddress::LocalHost);
}

LoopbackServer::LoopbackServer(const QHostAddress &address, quint16 port, QObject *parent)
    : QObject(parent), m_server(std::make_unique<QTcpServer>()), m_host(address.toString())
{
    listen(address, port);
}

LoopbackServer::LoopbackServer(const QString &certificateFile, const QString &keyFile,
                               QObject *parent)
    : QObject(parent), m_server(std::make_unique<TlsServer>(certificateFile, keyFile)), m_tls(true)
{
    listen(QHostAddress::LocalHost);
}

void LoopbackServer::listen(const QHostAddress &address, quint16 port)
{
    m_server->setListenBacklogSize(1024);
    m_server->listen(address, port);
    connect(m_server.get(), &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server->nextPendingConnection()) {
            m_mostOpen = std::max(m_mostOpen, ++m_open);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
            connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                --m_open;
                socket->deleteLater();
            });
        }
    });
}

LoopbackServer::~LoopbackServer() = default;

quint16 LoopbackServer::port() const
{
    return m_server->serverPort();
}

void LoopbackServer::route(const QByteArray &path, Response response)
{
    m_routes.insert(path, std::move(response));
}

QUrl LoopbackServer::url(const QByteArray &path) const
{
    return QUrl(QStringLiteral("%1://%2:%3%4")
                    .arg(m_tls ? QStringLiteral("https") : QStringLiteral("http"), m_host)
                    .arg(port())
                    .arg(QString::fromUtf8(path)));
}

QByteArray LoopbackServer::Request::header(const QByteArray &name) const
{
    for (const auto &[key, value] : headers) {
        if (key == name.toLower())
            return value;
    }
    return {};
}

QList<QByteArray> LoopbackServer::each(QByteArray Request::*part) const
{
    QList<QByteArray> parts;
    for (const Request &request : m_received)
        parts.append(request.*part);
    return parts;
}

QList<QByteArray> LoopbackServer::header(const QByteArray &name) const
{
    QList<QByteArray> values;
    for (const Request &request : m_received)
        values.append(request.header(name));
    return values;
}

void LoopbackServer::serve(QTcpSocket *socket)
{
    QByteArray request = socket->property("request").toByteArray() + socket->readAll();
    const qsizetype headerEnd = request.indexOf("\r\n\r\n");
    if (headerEnd < 0) {
        socket->setProperty("request", request);
        return;
    }
    const QList<QByteArray> lines = request.left(headerEnd).split('\n');
    const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
    Request whole{requestLine.value(0), requestLine.value(1), {}, {}};
    for (const QByteArray &line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        whole.headers.emplaceBack(line.left(colon).trimmed().toLower(),
                                  line.mid(colon + 1).trimmed());
    }
    const qsizetype length = whole.header("content-length").toLongLong();
    if (request.size() - headerEnd - 4 < length) {
        socket->setProperty("request", request); // the body is still coming
        return;
    }
    whole.body = request.mid(headerEnd + 4, length);
    socket->setProperty("request", request.mid(headerEnd + 4 + length));
    const QByteArray target = whole.target;
    m_received.append(whole);

    const QByteArray path =
        target.left(target.indexOf('?') < 0 ? target.size() : target.indexOf('?'));
    const Response response =
        m_routes.value(path, Response{404, QByteArrayLiteral("{\"error\":\"not found\"}"), {}});
    if (response.silent)
        return;
    if (response.delayMs > 0)
        QTimer::singleShot(response.delayMs, socket, [=, this] { send(socket, response); });
    else
        send(socket, response);
}

void LoopbackServer::send(QTcpSocket *socket, const Response &response)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + " Status\r\n";
    for (const auto &[name, value] : response.headers)
        head += name + ": " + value + "\r\n";
    if (response.contentLength)
        head += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
    head += response.keepAlive ? "\r\n" : "Connection: close\r\n\r\n";
    socket->write(head);
    if (response.stall)
        return;
    if (response.reset) {
        socket->write(response.body.left(response.body.size() / 2));
        socket->flush();
        socket->abort();
        return;
    }
    if (response.dripMs > 0) {
        auto *drip = new QTimer(socket);
        connect(drip, &QTimer::timeout, socket, [socket, drip, body = response.body]() mutable {
            if (body.isEmpty()) {
                drip->stop();
                socket->disconnectFromHost();
                return;
            }
            socket->write(body.left(1));
            body.remove(0, 1);
        });
        drip->start(response.dripMs);
        return;
    }
    socket->write(response.body);
    if (!response.keepAlive)
        socket->disconnectFromHost();
}
