#include "MdiChild.h"
#include "Schema.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "basRegistry.h"
#include "frmMain.h"

#include <QAction>
#include <QFile>
#include <QLabel>
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

    void firstStartHasNoDatabaseAndCreatesTheSettings()
    {
        ScriptedPrompts prompts;
        {
            frmMain w;
            w.startUp();
            QVERIFY(!basDatabase::IsOpen());
            QCOMPARE(w.windowTitle(), QStringLiteral("TendMark"));
            QVERIFY(w.toolbarButton("Open")->isEnabled());
            QVERIFY(basRegistry::KeyExists(basRegistry::SettingsKey()));
        }
        // A last file that has gone is forgotten without a word.
        basRegistry::SetString(basRegistry::SettingsKey(), "LastOpened", "/nowhere/moved.tmdb");
        frmMain w;
        w.startUp();
        QVERIFY(!basDatabase::IsOpen());
        QCOMPARE(lastOpened(), QString());
        QVERIFY(prompts.messages().isEmpty());
    }

    void reopensTheLastDatabase()
    {
        TestDatabase db(false);
        basRegistry::SetString(basRegistry::SettingsKey(), "LastOpened", db.path());
        ScriptedPrompts prompts;
        frmMain w;
        w.startUp();
        QVERIFY(basDatabase::IsOpen());
        QCOMPARE(w.databasePath(), db.path());
        QCOMPARE(w.windowTitle(), QStringLiteral("TendMark - [No Organization Name]"));
        QVERIFY(statusText(w).contains("test.tmdb"));
        QVERIFY(!w.toolbarButton("Open")->isEnabled());
        QVERIFY(prompts.messages().isEmpty());

        basDatabase::Execute("UPDATE Organization SET OrganizationName = ?", {"St. Mary's Pantry"});
        w.DisplayOrganizationName();
        QCOMPARE(w.windowTitle(), QStringLiteral("TendMark - St. Mary's Pantry"));

        menu(w, "mnuFileClose")->trigger();
        QVERIFY(!basDatabase::IsOpen());
        QCOMPARE(w.windowTitle(), QStringLiteral("TendMark"));
        QVERIFY(w.toolbarButton("Open")->isEnabled());
        QVERIFY(!statusText(w).contains("test.tmdb"));
    }

    void openingAskesForAFileAndRemembersIt()
    {
        TestDatabase db(false);
        ScriptedPrompts prompts;
        frmMain w;
        w.startUp();
        prompts.answerFile(QString());   // cancelled
        w.toolbarButton("Open")->trigger();
        QCOMPARE(prompts.fileRequests().last().title, QStringLiteral("Open Database"));
        QVERIFY(prompts.fileRequests().last().filter.contains("*.tmdb"));
        QVERIFY(!basDatabase::IsOpen());

        prompts.answerFile(db.path());
        menu(w, "mnuFileOpen")->trigger();
        QVERIFY(basDatabase::IsOpen());
        QCOMPARE(lastOpened(), db.path());
        QVERIFY(w.recentFiles().contains(db.path()));

        prompts.answerFile(QString());   // cancelling leaves the open database alone
        menu(w, "mnuFileOpen")->trigger();
        QVERIFY(basDatabase::IsOpen());
        QCOMPARE(w.databasePath(), db.path());

        // New makes a database with the standard contents and opens it.
        const QString made = db.folder() + "/hope.tmdb";
        prompts.answerFile(made);
        menu(w, "mnuFileNew")->trigger();
        QCOMPARE(w.databasePath(), made);
        QCOMPARE(TestDatabase::count("States"), 56);
        QVERIFY(prompts.messages().isEmpty());
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
