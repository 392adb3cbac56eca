#include "DemoDatabase.h"
#include "MdiChild.h"
#include "StartPanel.h"
#include "Schema.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "basRegistry.h"
#include "frmMain.h"

#include <QAction>
#include <QCommandLinkButton>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>

namespace {

QAction *menu(frmMain &w, const char *name)
{
    return w.findChild<QAction *>(QString::fromLatin1(name));
}
QString statusText(frmMain &w)
{
    return w.findChild<QLabel *>("Status")->text();
}
QString lastOpened()
{
    return basRegistry::GetString(basRegistry::SettingsKey(), "LastOpened", "<none>");
}

}   // namespace

class TestStartup : public QObject
{
    Q_OBJECT

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
        TestDatabase db(false);
        const bool opens = last == QLatin1String("db");
        if (!last.isEmpty())
            basRegistry::SetString(basRegistry::SettingsKey(), "LastOpened", opens ? db.path() : last);
        ScriptedPrompts prompts;
        frmMain w;
        w.startUp();
        QVERIFY(basRegistry::KeyExists(basRegistry::SettingsKey()));
        QCOMPARE(basDatabase::IsOpen(), opens);
        if (!last.isEmpty())
            QCOMPARE(lastOpened(), opens ? db.path() : QString());
        QCOMPARE(w.windowTitle(), opens ? QStringLiteral("TendMark - [No Organization Name]") : QStringLiteral("TendMark"));
        QCOMPARE(statusText(w).contains("test.tmdb"), opens);
        QCOMPARE(w.toolbarButton("Open")->isEnabled(), !opens);
        QVERIFY(prompts.messages().isEmpty());
        if (!opens)
            return;

        basDatabase::Execute("UPDATE Organization SET OrganizationName = ?", {"St. Mary's Pantry"});
        w.DisplayOrganizationName();
        QCOMPARE(w.windowTitle(), QStringLiteral("TendMark - St. Mary's Pantry"));
        menu(w, "mnuFileClose")->trigger();
        QVERIFY(!basDatabase::IsOpen());
        QCOMPARE(w.windowTitle(), QStringLiteral("TendMark"));
        QVERIFY(w.toolbarButton("Open")->isEnabled());
        QVERIFY(!statusText(w).contains("test.tmdb"));
    }

    // Open asks for a file and remembers it; the start panel, shown while no database is open, makes a new one,
    // lists the recent files (one gone) and opens the demo.
    void openNewRecentAndDemo()
    {
        TestDatabase db(false);
        ScriptedPrompts prompts;
        frmMain w;
        w.show();
        w.startUp();
        auto *panel = w.findChild<StartPanel *>();
        QVERIFY(panel->isVisible());
        prompts.answerFile(QString());   // cancelled
        w.toolbarButton("Open")->trigger();
        QCOMPARE(prompts.fileRequests().last().title, QStringLiteral("Open Database"));
        QVERIFY(prompts.fileRequests().last().filter.contains("*.tmdb"));
        QVERIFY(!basDatabase::IsOpen());
        prompts.answerFile(db.path());
        menu(w, "mnuFileOpen")->trigger();
        QVERIFY(basDatabase::IsOpen() && !panel->isVisible());
        QCOMPARE(lastOpened(), db.path());
        prompts.answerFile(QString());   // cancelling leaves the open database alone
        menu(w, "mnuFileOpen")->trigger();
        QCOMPARE(w.databasePath(), db.path());
        QVERIFY(w.closeDatabase());
        QVERIFY(panel->isVisible());

        // New makes a database with the standard contents and opens it.
        const QString made = db.folder() + "/hope.tmdb";
        prompts.answerFile(made);
        QTest::mouseClick(panel->findChild<QPushButton *>("cmdNewDatabase"), Qt::LeftButton);
        QVERIFY(prompts.fileRequests().last().save);
        QCOMPARE(w.databasePath(), made);
        QCOMPARE(TestDatabase::count("States"), 56);

        QVERIFY(w.openDatabaseFile(db.path(), true));
        QVERIFY(QFile::remove(made));
        QVERIFY(w.closeDatabase());
        QList<QCommandLinkButton *> entries = panel->findChildren<QCommandLinkButton *>("cmdRecent");
        QVERIFY(entries.size() >= 2);
        QCOMPARE(entries.at(0)->property("Path").toString(), db.path());
        QCOMPARE(entries.at(1)->property("Path").toString(), made);
        QVERIFY(!entries.at(1)->isEnabled());   // the file is not there any more
        QTest::mouseClick(entries.at(0), Qt::LeftButton);
        QCOMPARE(w.databasePath(), db.path());
        w.closeDatabase();

        QFile::remove(DemoDatabase::Path());
        QTest::mouseClick(panel->findChild<QPushButton *>("cmdOpenDemo"), Qt::LeftButton);
        QVERIFY(prompts.messages().isEmpty());
        QCOMPARE(w.databasePath(), DemoDatabase::Path());
        QCOMPARE(QFileInfo(DemoDatabase::Path()).absoluteDir().entryList({"*.creating*", "*.part"}, QDir::Files | QDir::Hidden), {});
        QCOMPARE(TestDatabase::count("Client"), 500);
        QCOMPARE(TestDatabase::count("AuditLog"), 0);   // made-up records are not changes anyone made
        QVERIFY(w.windowTitle().startsWith("TendMark - "));
        w.closeDatabase();
    }

    void aFileOfAnotherKindIsRefusedAndLeftAlone()
    {
        TestDatabase db(false);
        const QString other = db.folder() + "/notes.tmdb";
        {
            QFile f(other);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("Shopping list: beans, rice\n");
        }
        ScriptedPrompts prompts;
        frmMain w;
        w.startUp(db.path());
        QVERIFY(basDatabase::IsOpen());
        prompts.answerFile(other);
        menu(w, "mnuFileOpen")->trigger();
        QCOMPARE(prompts.messages().size(), 2);
        const Prompt::Message refusal = prompts.messages().at(0);
        QCOMPARE(refusal.title, QStringLiteral("Database Open Error"));
        QCOMPARE(refusal.text,
                 QStringLiteral("The selected database file may not be a valid TendMark database.\r\n"
                                "Please make sure that you are selecting the correct database file."));
        QCOMPARE(refusal.icon, Prompt::Icon::Exclamation);
        QCOMPARE(prompts.messages().at(1).title, QStringLiteral("Application Error"));
        QVERIFY(prompts.messages().at(1).text.contains("Module: \t\tfrmMain.mnuFileOpen_Click"));
        QVERIFY(!basDatabase::IsOpen());
        QCOMPARE(w.databasePath(), QString());
        QVERIFY(w.toolbarButton("Open")->isEnabled());
        QFile f(other);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), QByteArray("Shopping list: beans, rice\n"));
        QCOMPARE(prompts.fileRequests().last().directory, QFileInfo(db.path()).absolutePath());   // where the open database lies

        // A file of a newer TendMark is refused with what stands in the way, not as a fault.
        const QString newer = db.folder() + "/newer.tmdb";
        QVERIFY(QFile::copy(db.path(), newer));
        TestDatabase::onFile(newer, {"PRAGMA user_version = 99"});
        prompts.clear();
        prompts.answerFile(newer);
        menu(w, "mnuFileOpen")->trigger();
        QCOMPARE(prompts.messages(),
                 (QList<Prompt::Message> {
                     {"Database Open Error",
                      QStringLiteral("The file '%1' was made by a newer version of TendMark (database version 99).").arg(newer),
                      Prompt::Icon::Exclamation, Prompt::Ok}}));
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
        QCOMPARE(basRegistry::GetString(basRegistry::SettingsKey(), "frmMain"), QStringLiteral("40,50,1000,700"));
        frmMain again;
        again.restoreWindowGeometry();
        QCOMPARE(again.geometry(), QRect(40, 50, 1000, 700));
        QVERIFY(!basDatabase::IsOpen());
    }
};

QTEST_MAIN(TestStartup)
#include "tst_startup.moc"
