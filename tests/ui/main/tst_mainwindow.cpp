#include "FormTesting.h"
#include "LookupTables.h"
#include "MarkingTranslator.h"
#include "MdiChild.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "basRegistry.h"
#include "frmHelp.h"
#include "frmMain.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QTextBrowser>
#include <QToolBar>
#include <QtTest>

// The frame: its menus and toolbar with and without a database and windows, the Window menu, help, translations.
class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void dataMenusNeedADatabase_data()
    {
        QTest::addColumn<QString>("name");
        QStringList names
            = QStringLiteral("mnuFilePrintLabels mnuDataClientSummary mnuDataClientDetails mnuDataClientTable mnuDataVolunteers "
                             "mnuDataExportClients mnuDataExportVolunteers mnuReportsClientDetail mnuReportsClientList "
                             "mnuReportsDemographics mnuReportsFoodServiceByClient mnuReportsGeographicSummary mnuReportsGroceryLog "
                             "mnuReportsPaymentHistoryByClient mnuReportsVolunteerDetail mnuReportsVolunteerList mnuToolsOptions "
                             "ViewBarClientSummary ViewBarClientDetails ViewBarClientTable ViewBarVolunteers")
                  .split(QLatin1Char(' '));
        for (const LookupTables::LookupTable &t : LookupTables::all())
            names << QString::fromLatin1(t.menuName);
        for (const QString &name : names)
            QTest::newRow(qPrintable(name)) << name;
    }

    void dataMenusNeedADatabase()
    {
        QFETCH(QString, name);
        frmMain main;
        main.show();
        ScriptedPrompts prompts;
        QAction *command = main.findChild<QAction *>(name);
        QVERIFY(command && command->isEnabled());
        command->trigger();
        QCOMPARE(prompts.messages(),
                 (QList<Prompt::Message> {{"No Database open", "There is no current database open.", Prompt::Icon::Exclamation}}));
        QVERIFY(main.mdiArea()->subWindowList().isEmpty());
        QVERIFY(!main.findChild<QDialog *>());
    }

    // The View menu shows and hides the view bar; Help shows the guide and its index.
    void viewBarAndHelp()
    {
        frmMain main;
        main.show();
        auto *bar = main.findChild<QToolBar *>("picViewBar");
        QVERIFY(bar->isVisible());
        for (const bool shown : {false, true}) {
            menu(main, "mnuViewViewbar")->trigger();
            QCOMPARE(bar->isVisible(), shown);
        }

        menu(main, "mnuHelpContents")->trigger();
        auto *help = main.findChild<frmHelp *>();
        QVERIFY(help && help->isVisible());
        QCOMPARE(help->browser()->source().toString(), "qrc:/guide/index.html");

        // The index filters as one types and Return opens the page at its anchor.
        menu(main, "mnuHelpIndex")->trigger();
        auto *filter = help->findChild<QLineEdit *>("txtFilter");
        auto *list = help->findChild<QListWidget *>("lstIndex");
        QVERIFY(list->count() > 20);
        QTest::keyClicks(filter, "already open");
        QStringList shown;
        for (int i = 0; i < list->count(); ++i)
            if (!list->item(i)->isHidden())
                shown << list->item(i)->text();
        QCOMPARE(shown, QStringList {"An instance of TendMark is already open."});
        QTest::keyClick(filter, Qt::Key_Return);
        QCOMPARE(help->browser()->source().toString(), "qrc:/guide/troubleshooting.html#already-open");
        QVERIFY(help->browser()->toPlainText().contains(QStringLiteral("only one copy can run at a time")));
    }

    void menuEntriesAreNamedForTheirMenus()
    {
        frmMain main;
        QSet<QString> shortcuts;
        QStringList names;
        // Every entry is named after the menus it sits in and carries an access key unique within its menu.
        std::function<void(QMenu *, const QString &)> walk = [&](QMenu *menu, const QString &prefix) {
            Q_EMIT menu->aboutToShow();   // the Window menu lists its entries when it opens
            QSet<QChar> keys;
            for (QAction *a : menu->actions()) {
                if (a->isSeparator())
                    continue;
                const QString name = a->menu() ? a->menu()->menuAction()->objectName() : a->objectName();
                if (prefix == QLatin1String("mnuWindow") && name.isEmpty())
                    continue;   // the list of open windows
                QVERIFY2(name.startsWith(prefix) && name.size() > prefix.size(), qPrintable(prefix + ": " + a->text()));
                names << name;
                const int amp = a->text().indexOf(QLatin1Char('&'));
                QVERIFY2(amp >= 0 && amp + 1 < a->text().size(), qPrintable(name));
                const QChar key = a->text().at(amp + 1).toLower();
                QVERIFY2(!keys.contains(key), qPrintable(name + " repeats an access key"));
                keys.insert(key);
                if (!a->shortcut().isEmpty()) {
                    QVERIFY2(!shortcuts.contains(a->shortcut().toString()), qPrintable(name + " repeats a shortcut"));
                    shortcuts.insert(a->shortcut().toString());
                }
                if (a->menu())
                    walk(a->menu(), name);
            }
        };
        QStringList menus;
        for (QAction *top : main.menuBar()->actions()) {
            menus << top->menu()->objectName();
            walk(top->menu(), top->menu()->objectName());
        }
        QCOMPARE(menus, (QStringList {"mnuFile", "mnuData", "mnuView", "mnuReports", "mnuTools", "mnuWindow", "mnuHelp"}));
        QVERIFY(names.size() > 50);
    }

    void toolbarFollowsTheWindows_data()
    {
        // expected: Save, Delete, Filter, Sort Ascending, Sort Descending (buttons and menu entries), search bar
        QTest::addColumn<QString>("window");
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("expected");
        const char *rows[][4] = {
            {"no window", "", "", "000000"},
            {"details, saved client", "mnuDataClientDetails", "", "011001"},
            {"details, new client", "mnuDataClientDetails", "add", "001001"},
            {"details, typed", "mnuDataClientDetails", "type", "111001"},
            {"details, no client on file", "mnuDataClientDetails", "empty", "001001"},
            {"details, new client from the table", "mnuDataClientTable", "details add", "001001"},
            {"details, new client from the summary", "mnuDataClientSummary", "details add", "001001"},
            {"details, typed, then Add", "mnuDataClientDetails", "type add", "001001"},
            {"details, new client typed", "mnuDataClientDetails", "add type", "101001"},
            {"details, saved from the toolbar", "mnuDataClientDetails", "type Save", "011001"},
            {"summary", "mnuDataClientSummary", "", "011001"},
            {"grid, no client chosen", "mnuDataClientTable", "", "001001"},
            {"grid, client chosen", "mnuDataClientTable", "choose", "011001"},
            {"volunteers, new record", "mnuDataVolunteers", "", "001111"},
            {"volunteers, one chosen", "mnuDataVolunteers", "choose", "011111"},
            {"editor, new record", "editor", "add", "000000"},
            {"editor, existing record", "editor", "", "010000"},
            {"editor, typed", "editor", "type", "110000"},
            {"editor, deleted from the toolbar", "editor", "Delete", "000000"},
            {"lookup editor, no row chosen", "mnuToolsTablesHousing", "", "000000"},   // as its own Delete button
            {"lookup editor, new entry typed", "mnuToolsTablesHousing", "type", "100000"},
        };
        for (const auto &row : rows)
            QTest::newRow(row[0]) << QString::fromLatin1(row[1]) << QString::fromLatin1(row[2]) << QString::fromLatin1(row[3]);
    }

    void toolbarFollowsTheWindows()
    {
        QFETCH(QString, window);
        QFETCH(QString, step);
        QFETCH(QString, expected);
        ClientWorld world;
        frmMain &main = world.main;
        const QString client = QString::number(ClientWorld::addClient("Okafor", "Ada"));
        const QString volunteer = QString::number(TestDatabase::insert("Volunteer", {{"LastName", "Nguyen"}}));
        const qint64 service = TestDatabase::insert("FoodService", {{"ClientID", client}, {"NumberOfBags", 2}});
        const QStringList steps = step.split(' ', Qt::SkipEmptyParts);
        if (steps.contains("empty"))
            basDatabase::Execute("DELETE FROM Client");
        if (steps.contains("details"))
            menu(main, "mnuDataClientDetails")->trigger();   // already open behind the window used
        if (window == "editor")
            main.openRecordEditor(RecordKind::FoodService, client, steps.contains("add") ? QString() : QString::number(service));
        else if (!window.isEmpty())
            menu(main, qPrintable(window))->trigger();
        QCOMPARE(main.activeChild() != nullptr, !window.isEmpty());
        const bool lookups = window.startsWith("mnuToolsTables");
        for (const QString &s : steps) {
            MdiChild *child = main.activeChild();
            if (s == "add" && window != "editor") {
                auto *add = button(child, "cmdClientAdd");
                (add ? add : button(child, "cmdAdd"))->click();
            } else if (s == "choose") {
                child->showRecord(child->kind() == MdiChild::Kind::Volunteer ? volunteer : client);
            } else if (s == "type") {
                if (auto *grid = child->findChild<QTableView *>(); grid && lookups)
                    grid->setCurrentIndex(grid->model()->index(grid->model()->rowCount() - 1, 2));   // the row for a new entry
                QWidget *box
                    = lookups ? child->findChild<QLineEdit *>("txtEditBox") : fieldOf(child, window == "editor" ? "Comments" : "LastName");
                box->setFocus();
                QTest::keyClicks(box, "Zed");
            } else if (s == "Save" || s == "Delete") {
                // As a user does it: the toolbar's button, answering Yes to the question.
                world.prompts.answer(Prompt::Yes);
                main.toolbarButton(s)->trigger();
            }
        }

        // The menu entry of each command follows the same state as its button.
        const char *const commands[][2] = {{"Save", "mnuFileSave"},
                                           {"Delete", "mnuFileDelete"},
                                           {"Filter", "mnuDataFilter"},
                                           {"Sort Ascending", "mnuDataSortSortAscending"},
                                           {"Sort Descending", "mnuDataSortSortDescending"}};
        QString states, menuStates;
        for (const auto &[key, entry] : commands) {
            states += main.toolbarButton(QString::fromLatin1(key))->isEnabled() ? '1' : '0';
            menuStates += menu(main, entry)->isEnabled() ? '1' : '0';
        }
        states += main.findChild<QComboBox *>("cboSearchOn")->isEnabled() ? '1' : '0';
        QCOMPARE(states, expected);
        QCOMPARE(menuStates, expected.left(5));
        if (step == "type Save" || step == "type add")
            QCOMPARE(TestDatabase::count("Client", "LastName = 'OkaforZed'"), 1);
        if (step == "Delete")
            QCOMPARE(TestDatabase::count("FoodService"), 0);
        // A pending change is let go: "No" to saving a record, "Yes" to discarding a lookup table's edits.
        world.prompts.answer(lookups ? Prompt::Yes : Prompt::No);
        main.mdiArea()->closeAllSubWindows();
        QTRY_COMPARE(main.openChildCount(), 0);
        QVERIFY(main.mdiArea()->subWindowList().isEmpty());
        QVERIFY(!main.toolbarButton("Delete")->isEnabled() && !menu(main, "mnuFileDelete")->isEnabled());
    }

    void windowMenuArrangesTheWindows()
    {
        Desk desk;
        frmMain &main = desk.main;
        const QString settings = basRegistry::SettingsKey();
        // New windows open wholly inside the area, the first at the top left, each next a step down and right;
        // a remembered place is taken again, pulled back inside when it no longer fits; a window keeps its place when closed.
        basRegistry::SetString(settings, QStringLiteral("frmProbe3"), "2000,1500,3000,2000");
        basRegistry::SetString(settings, QStringLiteral("frmProbe4"), "50,60,400,300");
        QList<QMdiSubWindow *> subs;
        for (int i = 0; i < 5; ++i) {
            auto *child = new MdiChild(&main);
            child->setObjectName(QStringLiteral("frmProbe%1").arg(i));
            subs << main.addChild(child);
        }
        const QRect space = main.mdiArea()->viewport()->rect();
        QCOMPARE(subs.at(0)->geometry(), QRect(0, 0, int(space.width() * 0.85), int(space.height() * 0.75)));
        for (int i = 0; i < 5; ++i) {
            QVERIFY2(space.contains(subs.at(i)->geometry()), qPrintable(QString::number(i)));
            if (i > 0 && i < 3)
                QVERIFY(subs.at(i)->pos().x() > subs.at(i - 1)->pos().x() && subs.at(i)->pos().y() > subs.at(i - 1)->pos().y());
        }
        QCOMPARE(subs.at(3)->size(), space.size());
        QCOMPARE(subs.at(4)->geometry(), QRect(50, 60, 400, 300));
        subs.at(4)->setGeometry(70, 80, 300, 200);
        ClientWorld::closeWindow(subs.takeLast()->widget());
        QCOMPARE(basRegistry::GetString(settings, "frmProbe4"), "70,80,300,200");
        ClientWorld::closeWindow(subs.takeLast()->widget());
        subs.at(2)->showMaximized();
        auto arrange = [&](const char *name) {
            Q_EMIT main.findChild<QMenu *>("mnuWindow")->aboutToShow();
            QAction *a = menu(main, name);
            QVERIFY(a);
            a->trigger();
        };

        // Tile Horizontally: one above the other, each the full width; Vertically: side by side, each the full height.
        for (const bool horizontal : {true, false}) {
            arrange(horizontal ? "mnuWindowTileHorizontal" : "mnuWindowTileVertical");
            for (int i = 0; i < 3; ++i) {
                const QRect g = subs.at(i)->geometry();
                QVERIFY(!subs.at(i)->isMaximized());
                QCOMPARE(horizontal ? g.left() : g.top(), 0);
                QCOMPARE(horizontal ? g.width() : g.height(), horizontal ? space.width() : space.height());
                QVERIFY(qAbs((horizontal ? g.height() : g.width()) - (horizontal ? space.height() : space.width()) / 3) <= 1);
                if (i > 0) {
                    const QRect p = subs.at(i - 1)->geometry();
                    QCOMPARE(horizontal ? g.top() : g.left(), (horizontal ? p.bottom() : p.right()) + 1);
                }
            }
            QCOMPARE(horizontal ? subs.at(2)->geometry().bottom() : subs.at(2)->geometry().right(),
                     horizontal ? space.bottom() : space.right());
        }

        // Arrange Icons: the minimised windows in a row along the bottom; the others stay where they are
        subs.at(0)->showMinimized();
        subs.at(2)->showMinimized();
        subs.at(0)->move(300, 40);
        subs.at(2)->move(120, 200);
        const QRect open = subs.at(1)->geometry();
        arrange("mnuWindowArrangeIcons");
        QCOMPARE(subs.at(0)->geometry().bottomLeft(), QPoint(0, space.bottom()));
        QCOMPARE(subs.at(2)->geometry().bottomLeft(), QPoint(subs.at(0)->geometry().right() + 1, space.bottom()));
        QCOMPARE(subs.at(1)->geometry(), open);

        // and tiling leaves the icon row free
        arrange("mnuWindowTileHorizontal");
        QCOMPARE(subs.at(1)->geometry().top(), 0);
        QCOMPARE(subs.at(1)->width(), space.width());
        QCOMPARE(subs.at(1)->geometry().bottom(), subs.at(0)->geometry().top() - 1);
        QVERIFY(subs.at(0)->isMinimized());

        // Cascade: a step apart, each inside the area and at least two thirds of it
        subs.at(0)->showNormal();
        subs.at(2)->showNormal();
        arrange("mnuWindowCascade");
        for (int i = 0; i < 3; ++i) {
            const QRect g = subs.at(i)->geometry();
            QVERIFY(space.contains(g));
            QVERIFY(g.width() >= space.width() * 2 / 3 && g.height() >= space.height() * 2 / 3);
            if (i > 0)
                QVERIFY(g.topLeft().x() > subs.at(i - 1)->x() && g.topLeft().y() > subs.at(i - 1)->y());
        }
    }

    void aTranslationChangesTheTextsNotTheNames()
    {
        MarkingTranslator translator;
        QCoreApplication::installTranslator(&translator);
        const auto removeTranslator = qScopeGuard([&translator] { QCoreApplication::removeTranslator(&translator); });
        ClientWorld world;
        frmMain &main = world.main;
        const QString client
            = QString::number(TestDatabase::insert(QStringLiteral("Client"), {{QStringLiteral("LastName"), QStringLiteral("Okafor")}}));
        for (const char *window : {"mnuDataClientDetails", "mnuDataClientSummary", "mnuDataVolunteers", "mnuToolsTablesHousing"})
            menu(main, window)->trigger();
        for (RecordKind kind : {RecordKind::FamilyMember, RecordKind::FoodService, RecordKind::Payment, RecordKind::Income})
            main.openRecordEditor(kind, client, {});
        QCOMPARE(main.mdiArea()->subWindowList().size(), 8);

        // The shown texts come from the translation, menus, lookup tables and buttons alike...
        QCOMPARE(main.findChild<QMenu *>("mnuFile")->title(), "[&File]");
        QCOMPARE(menu(main, "mnuToolsTablesHousing")->text(), "[&Housing]");
        QCOMPARE(main.toolbarButton(QStringLiteral("Save"))->text(), "[Save]");
        QCOMPARE(main.toolbarButton(QStringLiteral("Search"))->text(), "[Search]");
        QCOMPARE(main.findChild<QWidget *>("frmClientDetails")->windowTitle(), "[Client Details]");
        // ...while the names the program finds things by stay as they are.
        int bound = 0;
        for (QWidget *w : main.findChildren<QWidget *>()) {
            const QString field = w->property("DataField").toString();
            QVERIFY2(!field.contains(QLatin1Char('[')) && !w->objectName().contains(QLatin1Char('[')), qPrintable(w->objectName() + field));
            bound += field.isEmpty() ? 0 : 1;
        }
        QVERIFY(bound > 60);
        for (QAction *a : main.findChildren<QAction *>())
            QVERIFY2(!a->objectName().contains(QLatin1Char('[')), qPrintable(a->objectName()));
        // The search bar shows its fields translated and searches by the untranslated one.
        main.activateChild(qobject_cast<MdiChild *>(main.findChild<QWidget *>("frmClientDetails")));
        auto *searchOn = main.findChild<QComboBox *>("cboSearchOn");
        QCOMPARE(searchOn->itemText(0), "[Last Name]");
        searchOn->setCurrentIndex(0);
        main.findChild<QComboBox *>("cboSearchFor")->setEditText(QStringLiteral("Okafor"));
        main.toolbarButton(QStringLiteral("Search"))->trigger();
        QVERIFY(world.prompts.messages().isEmpty());
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
