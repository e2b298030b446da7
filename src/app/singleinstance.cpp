#include "app/singleinstance.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {
const QByteArray showRequest = "show\n";
}

SingleInstance::SingleInstance(QString name, QObject *parent)
    : QObject(parent), m_name(std::move(name))
{
}

QString SingleInstance::defaultName()
{
    // The runtime folder is private to the user and to the session.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QDir(runtime).exists())
        return runtime + u"/lanternic.socket"_s;
    return u"lanternic-"_s + qEnvironmentVariable("USER", u"user"_s);
}

bool SingleInstance::askRunningInstanceToShow()
{
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(500))
        return false;
    socket.write(showRequest);
    socket.waitForBytesWritten(500);
    socket.disconnectFromServer();
    return true;
}

bool SingleInstance::listen()
{
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    // A socket left by an instance that crashed would block the name.
    QLocalServer::removeServer(m_name);
    if (!m_server->listen(m_name))
        return false;
    connect(m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
                if (socket->readAll().startsWith(showRequest.trimmed()))
                    Q_EMIT showRequested();
            });
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    return true;
}

} // namespace lanternic
