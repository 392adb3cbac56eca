#include "AccessSample.h"
#include "Backups.h"
#include "DemoDatabase.h"
#include "FormTesting.h"
#include "StartPanel.h"
#include "basDatabase.h"
#include "basRegistry.h"
#include "frmAuditLog.h"
#include "frmRestoreBackup.h"

#include <QApplication>
#include <QCheckBox>
#include <QCommandLinkButton>
#include <QDateEdit>
#include <QFileInfo>
#include <QScreen>
#include <QTableWidget>
#include <QTimer>

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

// Starting the program and opening files: the last database, the start panel, files of other kinds, Access databases;
// and what keeps a database safe: backups, the audit log, restoring, damaged, shared and moved files.
class TestOpening : public QObject
{
    Q_OBJECT

    // A main window not yet started, answering from a script, with a folder of files beside a closed test database.
    struct Start
    {
        TestDatabase db {false};
        ScriptedPrompts prompts;
        frmMain w;
        QString file(const QString &name) const
        {
            QDir().mkpath(QFileInfo(db.folder() + '/' + name).path());
            return db.folder() + '/' + name;
        }
        void open(const QString &path)
        {
            prompts.answerFile(path);
            menu(w, "mnuFileOpen")->trigger();
        }
        QString status() { return w.findChild<QLabel *>("Status")->text(); }
    };
    static QString lastOpened() { return basRegistry::GetString(basRegistry::SettingsKey(), "LastOpened", "<none>"); }

private Q_SLOTS:
    void init() { basRegistry::DeleteKey(basRegistry::SettingsKey()); }

    // Starting reopens the last database when it is still there; a first start, or a last file that has gone
    // (forgotten without a word), starts with none.
    void startUpReopensTheLastDatabase_data()
    {
        QTest::addColumn<QString>("last");   // LastOpened before the start; "db": the test's database
        QTest::newRow("first start") << QString();
        QTest::newRow("last file gone") << "/nowhere/moved.tmdb";
        QTest::newRow("last file there") << "db";
    }

    void startUpReopensTheLastDatabase()
    {
        QFETCH(QString, last);
        const bool opens = last == "db";
        Start s;
        if (!last.isEmpty())
            basRegistry::SetString(basRegistry::SettingsKey(), "LastOpened", opens ? s.db.path() : last);
        s.w.startUp();
        QVERIFY(basRegistry::KeyExists(basRegistry::SettingsKey()));
        QCOMPARE(basDatabase::IsOpen(), opens);
        if (!last.isEmpty())
            QCOMPARE(lastOpened(), opens ? s.db.path() : QString());
        QCOMPARE(s.w.windowTitle(), opens ? "TendMark - [No Organization Name]" : "TendMark");
        QCOMPARE(s.status().contains("test.tmdb"), opens);
        QCOMPARE(s.w.toolbarButton("Open")->isEnabled(), !opens);
        QVERIFY(s.prompts.messages().isEmpty());
        if (!opens)
            return;

        menu(s.w, "mnuFileClose")->trigger();
        QVERIFY(!basDatabase::IsOpen() && s.w.toolbarButton("Open")->isEnabled());
        QCOMPARE(s.w.windowTitle(), "TendMark");
        QVERIFY(!s.status().contains("test.tmdb"));
    }

    // Open asks for a file and remembers it; the start panel, shown while no database is open, makes a new one,
    // lists the recent files (one gone) and opens the demo.
    void openNewRecentAndDemo()
    {
        Start s;
        s.w.show();
        s.w.startUp();
        auto *panel = s.w.findChild<StartPanel *>();
        QVERIFY(panel->isVisible());
        s.prompts.answerFile(QString());   // cancelled
        s.w.toolbarButton("Open")->trigger();
        QCOMPARE(s.prompts.fileRequests().last().title, "Open Database");
        QVERIFY(s.prompts.fileRequests().last().filter.contains("*.tmdb"));
        QVERIFY(!basDatabase::IsOpen());
        s.open(s.db.path());
        QVERIFY(basDatabase::IsOpen() && !panel->isVisible());
        QCOMPARE(lastOpened(), s.db.path());
        s.open(QString());   // cancelling leaves the open database alone
        QCOMPARE(s.w.databasePath(), s.db.path());
        QVERIFY(s.w.closeDatabase());
        QVERIFY(panel->isVisible());

        // New makes a database with the standard contents and opens it.
        const QString made = s.file("hope.tmdb");
        s.prompts.answerFile(made);
        QTest::mouseClick(panel->findChild<QPushButton *>("cmdNewDatabase"), Qt::LeftButton);
        QVERIFY(s.prompts.fileRequests().last().save);
        QCOMPARE(s.w.databasePath(), made);
        QCOMPARE(TestDatabase::count("States"), 56);

        QVERIFY(s.w.openDatabaseFile(s.db.path(), true));
        QVERIFY(QFile::remove(made));
        QVERIFY(s.w.closeDatabase());
        QList<QCommandLinkButton *> entries = panel->findChildren<QCommandLinkButton *>("cmdRecent");
        QVERIFY(entries.size() >= 2);
        QCOMPARE(entries.at(0)->property("Path").toString() + '|' + entries.at(1)->property("Path").toString(), s.db.path() + '|' + made);
        QVERIFY(!entries.at(1)->isEnabled());   // the file is not there any more
        QTest::mouseClick(entries.at(0), Qt::LeftButton);
        QCOMPARE(s.w.databasePath(), s.db.path());
        s.w.closeDatabase();

        QFile::remove(DemoDatabase::Path());
        QTest::mouseClick(panel->findChild<QPushButton *>("cmdOpenDemo"), Qt::LeftButton);
        QVERIFY(s.prompts.messages().isEmpty());
        QCOMPARE(s.w.databasePath(), DemoDatabase::Path());
        QCOMPARE(QFileInfo(DemoDatabase::Path()).absoluteDir().entryList({"*.creating*", "*.part"}, QDir::Files | QDir::Hidden), {});
        QCOMPARE(TestDatabase::count("AuditLog"), 0);   // made-up records are not changes anyone made
        QVERIFY(s.w.windowTitle().startsWith("TendMark - "));
        s.w.closeDatabase();
    }

    void aFileOfAnotherKindIsRefusedAndLeftAlone()
    {
        Start s;
        const QString other = s.file("notes.tmdb");
        QVERIFY(TestDatabase::writeFile(other, "Shopping list: beans, rice\n"));
        s.w.startUp(s.db.path());
        QVERIFY(basDatabase::IsOpen());
        s.open(other);
        QCOMPARE(s.prompts.titles(), (QStringList {"Database Open Error", "Application Error"}));
        QCOMPARE(s.prompts.messages().at(0),
                 (Prompt::Message {"Database Open Error",
                                   "The selected database file may not be a valid TendMark database.\r\n"
                                   "Please make sure that you are selecting the correct database file.",
                                   Prompt::Icon::Exclamation}));
        QVERIFY(s.prompts.last().text.contains("Module: \t\tfrmMain.mnuFileOpen_Click"));
        QVERIFY(!basDatabase::IsOpen() && s.w.databasePath().isEmpty() && s.w.toolbarButton("Open")->isEnabled());
        QCOMPARE(TestDatabase::fileHash(other), QCryptographicHash::hash("Shopping list: beans, rice\n", QCryptographicHash::Sha256));
        QCOMPARE(s.prompts.fileRequests().last().directory, QFileInfo(s.db.path()).absolutePath());   // where the open database lies

        // A file of a newer TendMark is refused with what stands in the way, not as a fault.
        const QString newer = s.file("newer.tmdb");
        QVERIFY(QFile::copy(s.db.path(), newer));
        TestDatabase::onFile(newer, {"PRAGMA user_version = 99"});
        s.prompts.clear();
        s.open(newer);
        QCOMPARE(s.prompts.messages(),
                 (QList<Prompt::Message> {
                     {"Database Open Error",
                      QStringLiteral("The file '%1' was made by a newer version of TendMark (database version 99).").arg(newer),
                      Prompt::Icon::Exclamation}}));
    }

    void childWindowsAreCountedAndSurviveTheFrame()
    {
        TestDatabase db(false);
        auto *w = new frmMain;
        w->startUp(db.path());
        auto *child = new MdiChild(w);
        w->addChild(child);
        QCOMPARE(w->openChildCount(), 1);
        child->close();
        QTRY_COMPARE(w->openChildCount(), 0);
        QTRY_VERIFY(w->mdiArea()->subWindowList().isEmpty());   // no empty frame stays behind
        w->show();
        QVERIFY(QTest::qWaitForWindowActive(w));
        auto *first = new MdiChild(w);
        auto *second = new MdiChild(w);
        w->addChild(first);
        w->addChild(second);
        QCOMPARE(w->activeChild(), second);
        QTest::keyClick(second, Qt::Key_Escape);
        QTRY_COMPARE(w->openChildCount(), 1);
        QCOMPARE(w->activeChild(), first);   // Escape closes through the frame, so the next window takes over
        delete w;   // with a child still open
    }

    void closingTheWindowSavesTheSettings()
    {
        TestDatabase db(false);
        {
            frmMain w;
            w.restoreWindowGeometry();
            const QRect screen = w.screen()->availableGeometry();
            QVERIFY(w.width() >= screen.width() * 85 / 100);   // first start: most of the screen
            QVERIFY(screen.contains(w.geometry()));
            w.setGeometry(40, 50, 1000, 700);
            w.startUp(db.path());
            w.close();
        }
        QCOMPARE(lastOpened(), db.path());
        QCOMPARE(basRegistry::GetString(basRegistry::SettingsKey(), "frmMain"), "40,50,1000,700");
        frmMain again;
        again.restoreWindowGeometry();
        QCOMPARE(again.geometry(), QRect(40, 50, 1000, 700));
        QVERIFY(!basDatabase::IsOpen());
    }

    // An Access file is copied into a TendMark file beside it, which then opens; the report of the copy is saved beside it.
    void anAccessFileIsCopiedBesideItAndOpened()
    {
        Start s;
        s.w.startUp();
        const QString mdb = s.file("access/Northside.mdb"), tmdb = s.file("access/Northside.tmdb");
        QVERIFY(QFile::copy(AccessSample::path(), mdb));
        const QByteArray before = TestDatabase::fileHash(mdb);
        s.prompts.answer(Prompt::Ok);
        s.open(mdb);
        QVERIFY(s.prompts.fileRequests().last().filter.contains("*.mdb"));
        QCOMPARE(s.prompts.messages().size(), 2);
        QCOMPARE(s.prompts.messages().at(0),
                 (Prompt::Message {"Open Access Database",
                                   "Northside.mdb is an Access database. TendMark will copy it into a new TendMark file "
                                   "beside it, Northside.tmdb, and open that.\r\nThe Access file itself is never changed.",
                                   Prompt::Icon::Information, Prompt::Ok | Prompt::Cancel}));
        const QString report = s.prompts.messages().at(1).text;
        QVERIFY2(report.startsWith(QStringLiteral("Northside.mdb was copied into %1.\r\n").arg(tmdb)), qPrintable(report));
        const QString saved = s.file("access/Northside conversion report.txt");
        const QString note = QStringLiteral("\r\n\r\nThe whole report is saved as %1.").arg(saved);
        QVERIFY(report.endsWith("No value needed changing." + note));
        QFile file(saved);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QString whole = report.chopped(note.size());   // the file holds the same without the blank lines and the note where it is
        whole.replace(whole.indexOf("\r\n\r\n"), 4, "\r\n");
        QCOMPARE(QString::fromUtf8(file.readAll()), whole + "\r\n");
        QCOMPARE(s.w.databasePath(), tmdb);
        QCOMPARE(s.w.windowTitle(), "TendMark - Northside Community Food Pantry");
        QCOMPARE(TestDatabase::count("Client"), 12);
        QCOMPARE(TestDatabase::fileHash(mdb), before);

        // Opened again, the copy already there is replaced only when the user says so.
        basDatabase::Execute("DELETE FROM Volunteer");
        QVERIFY(s.w.closeDatabase());
        const QByteArray copy = TestDatabase::fileHash(tmdb);
        for (const Prompt::Button answer : {Prompt::No, Prompt::Yes}) {
            s.prompts.clear();
            s.prompts.answer(Prompt::Ok);
            s.prompts.answer(answer);
            s.open(mdb);
            QCOMPARE(s.prompts.messages().value(1),
                     (Prompt::Message {"Open Access Database",
                                       "Northside.tmdb already exists. Do you want to replace it with a new copy of Northside.mdb?",
                                       Prompt::Icon::Question, Prompt::Yes | Prompt::No}));
            QCOMPARE(basDatabase::IsOpen(), answer == Prompt::Yes);
            if (answer == Prompt::No)
                QCOMPARE(TestDatabase::fileHash(tmdb), copy);
        }
        QCOMPARE(s.prompts.messages().size(), 3);
        QCOMPARE(s.w.databasePath(), tmdb);
        QCOMPARE(TestDatabase::count("Volunteer"), 4);
        QCOMPARE(TestDatabase::fileHash(mdb), before);
    }

    // An Access file that is not converted leaves nothing behind: cancelled while it is copied, or not an Access file.
    void anAccessFileNotConvertedLeavesNothing_data()
    {
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<QString>("said");
        QTest::newRow("cancelled") << true << "The conversion was cancelled; no file was written.";
        QTest::newRow("not an Access file")
            << false << "pantry.mdb was not converted.\r\nThe file '%1' cannot be read. It is not an Access database.";
    }

    void anAccessFileNotConvertedLeavesNothing()
    {
        QFETCH(bool, cancel);
        QFETCH(QString, said);
        Start s;
        s.w.startUp();
        const QString mdb = s.file("access/pantry.mdb");
        QVERIFY(cancel ? QFile::copy(AccessSample::path(), mdb) : TestDatabase::writeFile(mdb, "LastName,FirstName\r\n"));
        s.prompts.answer(Prompt::Ok);
        QString shown;
        if (cancel)
            QTimer::singleShot(0, this, [&shown] {
                for (QWidget *top : QApplication::topLevelWidgets())
                    if (top->objectName() == "frmConvertAccess" && top->isVisible()) {
                        shown = top->findChild<QLabel *>("lblTable")->text();
                        button(top, "cmdCancel")->click();
                    }
            });
        s.open(mdb);
        QCOMPARE(s.prompts.messages().size(), 2);
        QCOMPARE(s.prompts.last().text, said.arg(mdb));
        QCOMPARE(shown, cancel ? "Copying States (table 1 of 24)..." : "");
        QVERIFY(!basDatabase::IsOpen());
        QCOMPARE(QDir(QFileInfo(mdb).path()).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot), QStringList {"pantry.mdb"});
    }

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

QTEST_MAIN(TestOpening)
#include "tst_opening.moc"
