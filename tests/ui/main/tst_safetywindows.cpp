#include "Backups.h"
#include "Desk.h"
#include "Schema.h"
#include "basDatabase.h"
#include "frmAuditLog.h"
#include "frmRestoreBackup.h"
#include "TestDatabase.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QCheckBox>
#include <QDateEdit>
#include <QTableWidget>
#include <QTest>

namespace {

// A database of 300 clients, opened once in the window (which backs it up) and closed again.
QString pantryWithBackup(Desk &d, const QString &name)
{
    d.main.closeDatabase();
    const QString path = TestDatabase::filledFile(d.db.folder() + QLatin1Char('/') + name);
    if (!d.main.openDatabaseFile(path, true))
        qFatal("cannot open %s", qPrintable(path));
    d.main.closeDatabase();
    return path;
}

}   // namespace

class tst_safetywindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void backupAuditAndRestoreBringBackADeletedClient()
    {
        Desk d;
        const qint64 id = TestDatabase::insert("Client", {{"LastName", "Keeper"}, {"FirstName", "Ann"}});
        const int before = int(Backups::List(d.db.path()).size());
        d.main.findChild<QAction *>("mnuFileBackupNow")->trigger();
        QCOMPARE(d.prompts.last().title, "Backup Now");
        const QString made = Backups::Latest(d.db.path());
        QVERIFY2(d.prompts.last().text.contains(QDir::toNativeSeparators(made)), qPrintable(d.prompts.last().text));
        QCOMPARE(int(Backups::List(d.db.path()).size()), before + 1);

        basDatabase::Execute("DELETE FROM Client WHERE ClientID = ?", {id});
        QCOMPARE(TestDatabase::count("Client", "LastName = 'Keeper'"), 0);

        auto *audit = d.open<frmAuditLog>("mnuToolsAuditLog");
        QVERIFY(audit);
        QLineEdit *client = audit->findChild<QLineEdit *>("txtClientID");
        client->setText(QString::number(id));
        audit->refill();
        const QTableWidget *grid = audit->grid();
        QCOMPARE(grid->rowCount(), 2);   // its insert and its delete, nobody else's
        QVERIFY(grid->item(1, 4)->text() == "delete" && grid->item(1, 5)->text().contains("Keeper"));
        // Up to yesterday the client had not been written yet; up to today both lines show.
        audit->findChild<QDateEdit *>("dtpUntil")->setDate(QDate::currentDate().addDays(-1));
        audit->findChild<QCheckBox *>("chkUntil")->setChecked(true);
        QCOMPARE(grid->rowCount(), 0);
        audit->findChild<QDateEdit *>("dtpUntil")->setDate(QDate::currentDate());
        QCOMPARE(grid->rowCount(), 2);
        QCOMPARE(grid->editTriggers(), QAbstractItemView::NoEditTriggers);
        client->setText(QString::number(id + 1));
        audit->refill();
        QCOMPARE(grid->rowCount(), 0);

        d.main.findChild<QAction *>("mnuFileRestore")->trigger();
        auto *restore = d.main.findChild<frmRestoreBackup *>();
        QVERIFY(restore);
        QCOMPARE(restore->grid()->rowCount(), before + 1);
        QCOMPARE(restore->grid()->currentRow(), 0);   // the newest first
        d.prompts.answer(Prompt::No);
        QVERIFY(!restore->restoreSelected());
        QCOMPARE(TestDatabase::count("Client", "LastName = 'Keeper'"), 0);
        d.prompts.answer(Prompt::Yes);
        QVERIFY(restore->restoreSelected());
        QCOMPARE(d.main.databasePath(), d.db.path());
        QCOMPARE(TestDatabase::count("Client", "LastName = 'Keeper'"), 1);
        QVERIFY(Backups::List(d.db.path()).size() > before + 1);   // the file as it was is kept too
        QVERIFY(!d.main.findChildWindow<frmAuditLog>());
    }

    void damagedOrIncompleteFileIsLeftAloneAndRescued_data()
    {
        QTest::addColumn<bool>("damaged");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("clientsAfter");   // -1: nothing opened
        QTest::newRow("damaged, open the latest backup") << true << int(Prompt::Yes) << 300;
        QTest::newRow("damaged, copy what can be read") << true << int(Prompt::No) << -2;
        QTest::newRow("incomplete, cancel") << false << int(Prompt::Cancel) << -1;
    }

    void damagedOrIncompleteFileIsLeftAloneAndRescued()
    {
        QFETCH(bool, damaged);
        QFETCH(int, answer);
        QFETCH(int, clientsAfter);
        Desk d;
        const QString path = pantryWithBackup(d, "pantry.tmdb");
        if (damaged)
            TestDatabase::scribble(path);
        else
            QVERIFY(TestDatabase::onFile(path, {"DROP TABLE Volunteer"}).isValid());
        const QByteArray before = TestDatabase::fileHash(path);
        const QString rescued = d.db.folder() + QStringLiteral("/rescued.tmdb");
        d.prompts.clear();
        d.prompts.answer(answer);
        if (answer != Prompt::Cancel)
            d.prompts.answerFile(rescued);

        QVERIFY(!d.main.openDatabaseFile(path, true));
        const Prompt::Message told = d.prompts.messages().value(0);
        QCOMPARE(told,
                 (Prompt::Message {"Damaged Database", told.text, Prompt::Icon::Critical, Prompt::Yes | Prompt::No | Prompt::Cancel}));
        QVERIFY2(told.text.contains("will not change this file") && told.text.contains("latest backup"), qPrintable(told.text));
        QCOMPARE(TestDatabase::fileHash(path), before);
        if (clientsAfter == -1) {
            QVERIFY(d.main.databasePath().isEmpty());
            QVERIFY(!QFile::exists(rescued));
            // With nothing open, File, Restore From Backup... asks which database first.
            d.prompts.answerFile(path);
            d.main.findChild<QAction *>("mnuFileRestore")->trigger();
            auto *restore = d.main.findChild<frmRestoreBackup *>();
            QVERIFY(restore);
            d.prompts.answer(Prompt::Yes);
            QVERIFY(restore->restoreSelected());
            QCOMPARE(d.main.databasePath(), path);
            QCOMPARE(TestDatabase::count(QStringLiteral("Client")), 300);
            // The incomplete file cannot be backed up with a check, so it is kept byte for byte.
            const QFileInfoList kept = QDir(Backups::Folder(path)).entryInfoList({QStringLiteral("*.kept")});
            QCOMPARE(kept.size(), 1);
            QCOMPARE(TestDatabase::fileHash(kept.constFirst().absoluteFilePath()), before);
            return;
        }
        QCOMPARE(d.main.databasePath(), rescued);
        const int clients = TestDatabase::count("Client");
        if (clientsAfter > 0)
            QCOMPARE(clients, clientsAfter);
        else
            QVERIFY2(clients > 0 && clients < 300 && d.prompts.titles().count("Damaged Database") == 2,
                     qPrintable(d.prompts.titles().join('|')));
    }

    void sharedAndMovedFilesAreReported()
    {
        Desk d;
        const QString path = pantryWithBackup(d, "shared.tmdb");
        for (const int answer : {int(Prompt::No), int(Prompt::Yes)}) {
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
            d.prompts.clear();
            d.prompts.answer(answer);
            QVERIFY(d.main.openDatabaseFile(path, true));
            QCOMPARE(d.prompts.titles(), QStringList {"Private File"});
            QCOMPARE(bool(QFile::permissions(path) & QFile::ReadOther), answer == Prompt::No);
        }

        QVERIFY(QFile::rename(path, path + QStringLiteral(".moved")));
        d.prompts.clear();
        for (int i = 0; i < 2; ++i) {
            QEvent activate(QEvent::WindowActivate);
            QApplication::sendEvent(&d.main, &activate);
        }
        QCOMPARE(d.prompts.titles(), QStringList {"Database Moved"});   // once, not at every activation
    }
};

QTEST_MAIN(tst_safetywindows)
#include "tst_safetywindows.moc"
