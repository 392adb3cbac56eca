#include "DemoDatabase.h"
#include "ScriptedPrompts.h"
#include "StartPanel.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "frmHelp.h"
#include "frmMain.h"

#include <QAction>
#include <QCommandLinkButton>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QToolBar>
#include <QtTest>

// The frame: the start panel with no database, the view bar, help.
class TestMainWindow : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QAction *action(frmMain &main, const char *name) { return main.findChild<QAction *>(QString::fromLatin1(name)); }

private slots:
    void dataMenusNeedADatabase_data();
    void dataMenusNeedADatabase();
    void startPanelCreatesANewDatabase();
    void startPanelReopensARecentFile();
    void startPanelOpensTheDemo();
    void viewBarFollowsTheViewMenu();
    void helpShowsTheGuide();
    void helpIndexOpensThePageAtItsAnchor();
};

void TestMainWindow::dataMenusNeedADatabase_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"mnuDataClientSummary", "mnuDataClientDetails", "mnuDataClientTable", "mnuDataVolunteers",
                             "mnuReportsGroceryLog", "ViewBarClientSummary", "ViewBarVolunteers"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestMainWindow::dataMenusNeedADatabase()
{
    QFETCH(QString, name);
    frmMain main;
    ScriptedPrompts prompts;
    main.findChild<QAction *>(name)->trigger();
    QCOMPARE(prompts.messages().size(), 1);
    QCOMPARE(prompts.last().title, QStringLiteral("No Database open"));
    QCOMPARE(prompts.last().text, QStringLiteral("There is no current database open."));
}

void TestMainWindow::startPanelCreatesANewDatabase()
{
    frmMain main;
    main.show();
    main.startUp();
    auto *panel = main.findChild<StartPanel *>();
    QVERIFY(panel && panel->isVisible());
    ScriptedPrompts prompts;
    const QString path = m_dir.filePath(QStringLiteral("pantry.tmdb"));
    prompts.answerFile(path);
    QTest::mouseClick(panel->findChild<QPushButton *>(QStringLiteral("cmdNewDatabase")), Qt::LeftButton);
    QCOMPARE(prompts.fileRequests().size(), 1);
    QVERIFY(prompts.fileRequests().first().save);
    QCOMPARE(main.databasePath(), QFileInfo(path).absoluteFilePath());
    QVERIFY(basDatabase::IsOpen());
    QVERIFY(!panel->isVisible());
    main.closeDatabase();
    QVERIFY(panel->isVisible());
}

void TestMainWindow::startPanelReopensARecentFile()
{
    TestDatabase db(false);
    const QString gone = m_dir.filePath(QStringLiteral("moved.tmdb"));
    QVERIFY(QFile::copy(db.path(), gone));
    frmMain main;
    main.show();
    QVERIFY(main.openDatabaseFile(gone, true));
    QVERIFY(main.openDatabaseFile(db.path(), true));
    QVERIFY(QFile::remove(gone));
    QVERIFY(main.closeDatabase());
    auto *panel = main.findChild<StartPanel *>();
    QList<QCommandLinkButton *> entries = panel->findChildren<QCommandLinkButton *>(QStringLiteral("cmdRecent"));
    QVERIFY(entries.size() >= 2);
    QCOMPARE(entries.at(0)->property("Path").toString(), db.path());
    QCOMPARE(entries.at(1)->property("Path").toString(), QFileInfo(gone).absoluteFilePath());
    QVERIFY(!entries.at(1)->isEnabled()); // the file is not there any more
    ScriptedPrompts prompts;
    QTest::mouseClick(entries.at(0), Qt::LeftButton);
    QCOMPARE(main.databasePath(), db.path());
    QVERIFY(prompts.messages().isEmpty());
    main.closeDatabase();
}

void TestMainWindow::startPanelOpensTheDemo()
{
    QFile::remove(DemoDatabase::Path());
    frmMain main;
    main.show();
    main.startUp();
    auto *panel = main.findChild<StartPanel *>();
    ScriptedPrompts prompts;
    QTest::mouseClick(panel->findChild<QPushButton *>(QStringLiteral("cmdOpenDemo")), Qt::LeftButton);
    QVERIFY(prompts.messages().isEmpty());
    QVERIFY(QFile::exists(DemoDatabase::Path()));
    QVERIFY(!QFile::exists(DemoDatabase::Path() + QStringLiteral(".part")));
    QCOMPARE(main.databasePath(), DemoDatabase::Path());
    QCOMPARE(TestDatabase::count(QStringLiteral("Client")), 500);
    QVERIFY(!panel->isVisible());
    QVERIFY(main.windowTitle().startsWith(QStringLiteral("TendMark - ")));
    main.closeDatabase();
}

void TestMainWindow::viewBarFollowsTheViewMenu()
{
    frmMain main;
    main.show();
    auto *bar = main.findChild<QToolBar *>(QStringLiteral("picViewBar"));
    QVERIFY(bar && bar->isVisible());
    QCOMPARE(bar->orientation(), Qt::Vertical);
    QAction *toggle = action(main, "mnuViewViewbar");
    toggle->trigger();
    QVERIFY(!bar->isVisible());
    toggle->trigger();
    QVERIFY(bar->isVisible());
    QStringList captions;
    for (QAction *a : bar->actions())
        captions << a->text().replace(QLatin1Char('\n'), QLatin1Char(' '));
    QCOMPARE(captions, (QStringList{"Client Summary", "Client Details", "Client Table", "Volunteers"}));
}

void TestMainWindow::helpShowsTheGuide()
{
    frmMain main;
    main.show();
    action(main, "mnuHelpContents")->trigger();
    auto *help = main.findChild<frmHelp *>();
    QVERIFY(help && help->isVisible());
    QCOMPARE(help->browser()->source().toString(), QStringLiteral("qrc:/guide/index.html"));
    QVERIFY(help->browser()->toPlainText().contains(QStringLiteral("TendMark")));
    // the corrected guide: expense categories are protected like every other entry
    help->showPage(QStringLiteral("lookup-tables.html"));
    QVERIFY(!help->browser()->toPlainText().contains(QStringLiteral("not checked before they are deleted")));
}

void TestMainWindow::helpIndexOpensThePageAtItsAnchor()
{
    frmMain main;
    main.show();
    action(main, "mnuHelpIndex")->trigger();
    auto *help = main.findChild<frmHelp *>();
    auto *filter = help->findChild<QLineEdit *>(QStringLiteral("txtFilter"));
    auto *list = help->findChild<QListWidget *>(QStringLiteral("lstIndex"));
    QVERIFY(list->count() > 20);
    QTest::keyClicks(filter, QStringLiteral("already open"));
    QList<QListWidgetItem *> shown;
    for (int i = 0; i < list->count(); ++i)
        if (!list->item(i)->isHidden())
            shown << list->item(i);
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown.first()->text(), QStringLiteral("An instance of TendMark is already open."));
    QTest::keyClick(filter, Qt::Key_Return);
    QCOMPARE(help->browser()->source().toString(), QStringLiteral("qrc:/guide/troubleshooting.html#already-open"));
    QVERIFY(help->browser()->toPlainText().contains(QStringLiteral("only one copy can run at a time")));
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
