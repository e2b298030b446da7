// Serves one status document for any request, on every local address, for the pass benchmark.

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
    const QByteArray response = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n"
                                "Connection: close\r\nContent-Length: " +
                                QByteArray::number(body.size()) + "\r\n\r\n" + body;

    QTcpServer server;
    server.setListenBacklogSize(4096);
    if (!server.listen(QHostAddress::AnyIPv4, quint16(QByteArray(argv[1]).toUInt())))
        return 1;
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        while (QTcpSocket *socket = server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, &response] {
                if (!socket->readAll().contains("\r\n\r\n"))
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
