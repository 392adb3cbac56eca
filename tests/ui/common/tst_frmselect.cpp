#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "WidgetPrompts.h"
#include "frmSelect.h"

#include <QApplication>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QtTest>

// The record picker on real queries, and the real prompt that shows it.
class TestFrmSelect : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestDatabase> m_db;
    qint64 m_first = 0, m_second = 0;
    const QString m_query = QStringLiteral(
        "SELECT ClientID, LastName, FirstName, MiddleInitial, SocialSecurityNumber, Address, City, State, ZipCode, HomePhone "
        "FROM Client WHERE LastName LIKE ? ORDER BY LastName");

private slots:
    void initTestCase()
    {
        m_db = std::make_unique<TestDatabase>();
        m_first = TestDatabase::insert("Client",
                                       {{"LastName", "Adams"},
                                        {"FirstName", "Ruth"},
                                        {"SocialSecurityNumber", "123456789"},
                                        {"Address", "12 Elm St\r\nApt 4\nBack door"},
                                        {"HomePhone", "9375551234"}});
        m_second = TestDatabase::insert("Client", {{"LastName", "Baker"}, {"FirstName", "Tom"}});
    }
    void cleanupTestCase() { m_db.reset(); }

    // A double-click chooses its row; an empty result shows one blank row that cannot be chosen, OK stays off.
    void doubleClickChoosesTheRow_data()
    {
        QTest::addColumn<QString>("names");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("chosen");
        QTest::newRow("second row") << "%" << 1 << true;
        QTest::newRow("blank row of an empty result") << "Nobody" << 0 << false;
    }

    void doubleClickChoosesTheRow()
    {
        QFETCH(QString, names);
        QFETCH(int, row);
        QFETCH(bool, chosen);
        frmSelect form;
        form.setRecordset({m_query, {names}, {}});
        form.show();
        auto *grid = form.findChild<QTableView *>(QStringLiteral("grdData"));
        auto *ok = form.findChild<QPushButton *>(QStringLiteral("cmdOK"));
        QCOMPARE(grid->model()->rowCount(), chosen ? 2 : 1);
        QCOMPARE(ok->isEnabled(), chosen);   // the first row starts current
        const QPoint at = grid->visualRect(grid->model()->index(row, 2)).center();
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(form.OKClicked(), chosen);
        QCOMPARE(form.isVisible(), !chosen);
        if (chosen) {
            QCOMPARE(form.RecordID(), QString::number(m_second));
            QCOMPARE(form.result(), int(QDialog::Accepted));
            return;
        }
        QVERIFY(!ok->isEnabled());
        form.findChild<QPushButton *>(QStringLiteral("cmdCancel"))->click();
        QVERIFY(!form.isVisible() && !form.OKClicked());
        QCOMPARE(form.result(), int(QDialog::Rejected));
    }

    // The real prompt shows the picker with its caption, the values formatted on one line each.
    void realPromptShowsThePickerFormatted()
    {
        WidgetPrompts prompts;
        Prompt::setHandler(&prompts);
        QString caption;
        QStringList headings, first;
        QTimer::singleShot(0, [&] {
            auto *form = qobject_cast<frmSelect *>(QApplication::activeModalWidget());
            QVERIFY(form);
            caption = form->windowTitle();
            QAbstractItemModel *model = form->findChild<QTableView *>(QStringLiteral("grdData"))->model();
            for (int c = 1; c < model->columnCount(); ++c) {
                headings << model->headerData(c, Qt::Horizontal).toString();
                first << model->index(0, c).data().toString() + QLatin1Char('/') + model->index(1, c).data().toString();
            }
            form->findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
        });
        Prompt::PickRequest request;
        request.caption = QStringLiteral("Select Client");
        request.label = QStringLiteral("Pick one.");
        request.query = {m_query, {"%"}, {}};
        const std::optional<QString> chosen = Prompt::pick(request);
        Prompt::setHandler(nullptr);
        QCOMPARE(caption, QStringLiteral("Select Client"));
        QCOMPARE(headings, (QStringList {"Last Name", "First Name", "MI", "SSN", "Address", "City", "State", "Zip Code", "Home Phone"}));
        // Adams over Baker: nulls show empty, line breaks as spaces.
        QCOMPARE(first,
                 (QStringList {"Adams/Baker", "Ruth/Tom", "/", "123-45-6789/", "12 Elm St  Apt 4 Back door/", "/", "/", "/",
                               "(937) 555-1234/"}));
        QCOMPARE(chosen, std::optional<QString>(QString::number(m_first)));
    }
};

QTEST_MAIN(TestFrmSelect)
#include "tst_frmselect.moc"
