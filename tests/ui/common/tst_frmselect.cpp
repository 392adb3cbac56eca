#include "DataBinding.h"
#include "GridModel.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "WidgetPrompts.h"
#include "frmSelect.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QtTest>

// The record picker on real queries.
class TestFrmSelect : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestDatabase> m_db;
    qint64 m_first = 0, m_second = 0;
    const QString m_query = QStringLiteral(
        "SELECT ClientID, LastName, FirstName, MiddleInitial, SocialSecurityNumber, Address, City, State, ZipCode, HomePhone "
        "FROM Client ORDER BY LastName");

private slots:
    void initTestCase();
    void cleanupTestCase();
    void emptyResultKeepsOkDisabled();
    void valuesAreShownFormattedOnOneLine();
    void doubleClickChoosesTheRow();
    void realPromptShowsThePicker();
};

void TestFrmSelect::initTestCase()
{
    m_db = std::make_unique<TestDatabase>();
    m_first = TestDatabase::insert("Client",
                                   {{"LastName", "Adams"},
                                    {"FirstName", "Ruth"},
                                    {"SocialSecurityNumber", "123456789"},
                                    {"Address", "12 Elm St\r\nApt 4\nBack door"},
                                    {"City", "Dayton"},
                                    {"State", "OH"},
                                    {"ZipCode", "45402"},
                                    {"HomePhone", "9375551234"}});
    m_second = TestDatabase::insert("Client", {{"LastName", "Baker"}, {"FirstName", "Tom"}});
}

void TestFrmSelect::cleanupTestCase()
{
    m_db.reset();
}

void TestFrmSelect::emptyResultKeepsOkDisabled()
{
    frmSelect form;
    form.setRecordset({QStringLiteral("SELECT ClientID, LastName FROM Client WHERE LastName = ?"), {QStringLiteral("Nobody")}, {}});
    form.show();
    auto *grid = form.findChild<QTableView *>(QStringLiteral("grdData"));
    QCOMPARE(grid->model()->rowCount(), 1);   // the blank row
    auto *ok = form.findChild<QPushButton *>(QStringLiteral("cmdOK"));
    QVERIFY(!ok->isEnabled());
    grid->setCurrentIndex(grid->model()->index(0, 1));
    QVERIFY(!ok->isEnabled());
    const QPoint blank = grid->visualRect(grid->model()->index(0, 1)).center();
    QTest::mousePress(grid->viewport(), Qt::LeftButton, {}, blank);
    QTest::mouseRelease(grid->viewport(), Qt::LeftButton, {}, blank);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, blank);
    QVERIFY(form.isVisible());
    QVERIFY(!form.OKClicked());
    form.findChild<QPushButton *>(QStringLiteral("cmdCancel"))->click();
    QVERIFY(!form.isVisible());
    QVERIFY(!form.OKClicked());
    QCOMPARE(form.result(), int(QDialog::Rejected));
}

void TestFrmSelect::valuesAreShownFormattedOnOneLine()
{
    frmSelect form;
    form.setFormCaption(QStringLiteral("Client Already On File?"));
    form.setFormLabel(QStringLiteral("Line one.\r\nLine two."));
    form.setRecordset({m_query, {}, {}});
    QCOMPARE(form.windowTitle(), QStringLiteral("Client Already On File?"));
    QCOMPARE(form.findChild<QLabel *>(QStringLiteral("lblGrid"))->text(), QStringLiteral("Line one.\nLine two."));
    auto *grid = form.findChild<QTableView *>(QStringLiteral("grdData"));
    QAbstractItemModel *model = grid->model();
    QStringList headings;
    for (int c = 1; c < model->columnCount(); ++c)
        headings << model->headerData(c, Qt::Horizontal).toString();
    QCOMPARE(headings, (QStringList {"Last Name", "First Name", "MI", "SSN", "Address", "City", "State", "Zip Code", "Home Phone"}));
    QCOMPARE(model->index(0, 1).data().toString(), QStringLiteral("Adams"));
    QCOMPARE(model->index(0, 4).data().toString(), QStringLiteral("123-45-6789"));
    QCOMPARE(model->index(0, 5).data().toString(), QStringLiteral("12 Elm St  Apt 4 Back door"));
    QCOMPARE(model->index(0, 9).data().toString(), QStringLiteral("(937) 555-1234"));
    QCOMPARE(model->index(1, 4).data().toString(), QString());   // null shows empty
    QCOMPARE(grid->columnWidth(1), 1200 / 15);
}

void TestFrmSelect::doubleClickChoosesTheRow()
{
    frmSelect form;
    form.setRecordset({m_query, {}, {}});
    form.show();
    auto *grid = form.findChild<QTableView *>(QStringLiteral("grdData"));
    QVERIFY(form.findChild<QPushButton *>(QStringLiteral("cmdOK"))->isEnabled());   // the first row starts current
    const QPoint second = grid->visualRect(grid->model()->index(1, 2)).center();
    QTest::mousePress(grid->viewport(), Qt::LeftButton, {}, second);
    QTest::mouseRelease(grid->viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, second);
    QVERIFY(form.OKClicked());
    QCOMPARE(form.RecordID(), QString::number(m_second));
    QCOMPARE(form.result(), int(QDialog::Accepted));
}

void TestFrmSelect::realPromptShowsThePicker()
{
    WidgetPrompts prompts;
    Prompt::setHandler(&prompts);
    QString seenCaption;
    QTimer::singleShot(0, [&] {
        auto *form = qobject_cast<frmSelect *>(QApplication::activeModalWidget());
        QVERIFY(form);
        seenCaption = form->windowTitle();
        form->findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
    });
    Prompt::PickRequest request;
    request.caption = QStringLiteral("Select Client");
    request.label = QStringLiteral("Pick one.");
    request.query.sql = m_query;
    const std::optional<QString> chosen = Prompt::pick(request);
    Prompt::setHandler(nullptr);
    QCOMPARE(seenCaption, QStringLiteral("Select Client"));
    QVERIFY(chosen);
    QCOMPARE(*chosen, QString::number(m_first));
}

QTEST_MAIN(TestFrmSelect)
#include "tst_frmselect.moc"
