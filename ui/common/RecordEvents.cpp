#include "RecordEvents.h"

void RecordEvents::announce(const QString &clientId, const QObject *source)
{
    Q_EMIT clientRecordsChanged(clientId, source);
}
