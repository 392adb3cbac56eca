#pragma once

#include <QLocalServer>
#include <QObject>
#include <QStringList>

// Makes sure only one copy of TendMark runs per user. The first copy listens;
// a later copy hands over its arguments and is told to end.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(const QString &name, QObject *parent = nullptr);

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
