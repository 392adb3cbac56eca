#pragma once

#include <QObject>
#include <QString>

// The one place a saved or deleted record is announced: the open client windows
// follow it and refill, whichever window made the change.
class RecordEvents : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void announce(const QString &clientId, const QObject *source);

Q_SIGNALS:
    // Records of this client (or the client itself) were saved or deleted by source.
    void clientRecordsChanged(const QString &clientId, const QObject *source);
};
