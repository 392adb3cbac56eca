#include "SingleInstance.h"

#include "PrivateFiles.h"

#include <QDataStream>
#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>

QString SingleInstance::SocketPath(const QString &name)
{
#ifdef Q_OS_UNIX
    // Qt makes sure this folder is the user's own and 0700, creating /tmp/runtime-USER when needed.
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty() || !PrivateFiles::OwnedByMe(folder) || PrivateFiles::IsReadableByOthers(folder))
        folder = QDir::home().filePath(QStringLiteral(".tendmark-run"));
    PrivateFiles::MakePrivateFolder(folder);
    return QDir(folder).filePath(name);
#else
    // Pipe names are shared by every session on the machine: each user gets their own.
    return name + QLatin1Char('-') + qEnvironmentVariable("USERNAME");
#endif
}

SingleInstance::SingleInstance(const QString &name, QObject *parent) : QObject(parent), m_name(SocketPath(name))
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
#ifdef Q_OS_UNIX
    if (!QFileInfo::exists(m_name) || !PrivateFiles::OwnedByMe(m_name))
        return false;   // never hand the command line to a socket someone else made
#endif
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
    // A stale socket left by a copy that crashed, or one squatted by someone else.
    QLocalServer::removeServer(m_name);
    return m_server.listen(m_name);
}
