#include "Desk.h"

#include <QTest>

Desk::Desk(QSize size) : db(false)
{
    main.resize(size);
    main.show();
    main.activateWindow();
    if (!QTest::qWaitForWindowActive(&main))
        qWarning("the main window is not active: focus checks may fail");
    if (!main.openDatabaseFile(db.path(), true))
        qFatal("cannot open the test database");
}
