#pragma once

#include <QLocalServer>
#include <QObject>
#include <QStringList>

// Makes sure only one copy of TendMark runs per user. The first copy listens on a
// socket in the user's private runtime folder, open to that user only; a later
// copy hands over its arguments, but only to a socket that user owns.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(const QString &name, QObject *parent = nullptr);

    // Where the socket of that name lives: in XDG_RUNTIME_DIR, or else in a
    // folder of the program's own that only the user can enter.
    static QString SocketPath(const QString &name);

    // True when another copy already runs; the arguments were passed to it.
    bool anotherIsRunning(const QStringList &arguments);
    // Starts listening for later copies (call when this is the first).
    bool listen();

signals:
    void activated(const QStringList &arguments);

private:
    QString m_name;
    QLocalServer m_server;
};
