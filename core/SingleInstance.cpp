#include "SingleInstance.h"

#include <QDataStream>
#include <QLocalSocket>

SingleInstance::SingleInstance(const QString &name, QObject *parent) : QObject(parent), m_name(name)
{
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                QDataStream in(socket);
                in.startTransaction();
                QStringList arguments;
                in >> arguments;
                if (!in.commitTransaction())
                    return;
                emit activated(arguments);
                socket->disconnectFromServer();
            });
        }
    });
}

bool SingleInstance::anotherIsRunning(const QStringList &arguments)
{
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(500))
        return false;
    QByteArray block;
    QDataStream out(&block, QIODevice::WriteOnly);
    out << arguments;
    socket.write(block);
    socket.waitForBytesWritten(1000);
    socket.waitForDisconnected(1000);
    return true;
}

bool SingleInstance::listen()
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    if (m_server.listen(m_name))
        return true;
    // A stale socket left by a copy that crashed.
    QLocalServer::removeServer(m_name);
    return m_server.listen(m_name);
}
