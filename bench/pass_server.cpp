// Serves one status document for any request, on every local address, for the pass benchmark;
// a request whose path has "silent" in it is accepted and never answered.

#include <QCoreApplication>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: pass_server PORT DOCUMENT\n");
        return 2;
    }
    QFile file(QString::fromLocal8Bit(argv[2]));
    if (!file.open(QIODevice::ReadOnly))
        return 2;
    const QByteArray body = file.readAll();
    // About 1 KB of headers, as status pages behind a CDN send them.
    const QByteArray response =
        "HTTP/1.1 200 OK\r\n"
        "Date: Sun, 22 Nov 2026 20:12:10 GMT\r\n"
        "Content-Type: application/json; charset=utf-8\r\n"
        "Cache-Control: max-age=0, private, must-revalidate\r\n"
        "ETag: W/\"6f1c2d9e8b7a6f5e4d3c2b1a09f8e7d6\"\r\n"
        "Vary: Accept-Encoding, Origin\r\n"
        "Strict-Transport-Security: max-age=31536000; includeSubDomains; preload\r\n"
        "Content-Security-Policy: default-src 'self'; script-src 'self' "
        "https://cdn.statuspage.io https://www.google-analytics.com; style-src 'self' "
        "'unsafe-inline' https://cdn.statuspage.io; img-src 'self' data: https:; connect-src "
        "'self' https://api.statuspage.io; font-src 'self' https://fonts.gstatic.com; "
        "frame-ancestors 'none'; base-uri 'self'; form-action 'self'\r\n"
        "X-Content-Type-Options: nosniff\r\n"
        "X-Frame-Options: DENY\r\n"
        "Referrer-Policy: strict-origin-when-cross-origin\r\n"
        "X-Cache: Hit from cloudfront\r\n"
        "Via: 1.1 8f3c0e2a5b6d7c8e9f0a1b2c3d4e5f60.cloudfront.net (CloudFront)\r\n"
        "X-Amz-Cf-Pop: FRA56-P7\r\n"
        "X-Amz-Cf-Id: Jq3v9X2kLm8Np4Rs6Tu0Wx1Yz5Ab7Cd9Ef2Gh4Ij6Kl8Mn0Op==\r\n"
        "X-Request-Id: 4c1f7e9a-2b3d-4e5f-8a9b-0c1d2e3f4a5b\r\n"
        "Age: 3\r\n"
        "Connection: close\r\n"
        "Content-Length: " +
        QByteArray::number(body.size()) + "\r\n\r\n" + body;
    QTcpServer server;
    server.setListenBacklogSize(4096);
    if (!server.listen(QHostAddress::AnyIPv4, quint16(QByteArray(argv[1]).toUInt())))
        return 1;
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        while (QTcpSocket *socket = server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, &response] {
                const QByteArray head = socket->readAll();
                if (!head.contains("\r\n\r\n") || head.contains("silent"))
                    return;
                socket->write(response);
                socket->disconnectFromHost();
            });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    std::printf("ready\n");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
