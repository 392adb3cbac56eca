#include "ClientRules.h"
#include "DataBinding.h"
#include "FormTesting.h"
#include "frmClientDetails.h"
#include "frmImportClients.h"

#include <QGroupBox>
#include <QListWidget>
#include <QRadioButton>
#include <QTableWidget>
#include <QTimer>

class tst_ImportClients : public QObject
{
    Q_OBJECT

private slots:
    // The user chooses a file, fixes a column the header names its own way,
    // sees every row's fate, declines once, then imports adding the new lookup.
    void importThroughTheDialog()
    {
        ClientWorld world;
        // The details window marks as required exactly the fields an import requires.
        QStringList required, rules = ClientRules::requiredColumns();
        for (QWidget *c : world.open<frmClientDetails>("mnuDataClientDetails")->findChildren<QWidget *>())
            if (basTendmark::IsRequired(c))
                required << basTendmark::DataField(c);
        required.sort();
        rules.sort();
        QCOMPARE(required, rules);

        const QString csv = world.db.folder() + "/households.csv";
        QVERIFY(TestDatabase::writeFile(csv,
                                        "Client ID,Surname,First Name,Social Security Number,Address,City,State,Housing\r\n"
                                        "7,Garc\xC3\xAD"
                                        "a,Jos\xC3\xA9,123-45-6789,1 Main St,Dayton,OH,Tent\r\n"
                                        "8,Roe,Rick,12-34,2 Main St,Dayton,OH,Renting\r\n"
                                        "9,\xE7\x8E\x8B,\xE7\xA7\x80,987-65-4321,3 Main St,Dayton,OH,\r\n"));
        world.prompts.answerFile(csv);
        world.main.findChild<QAction *>("mnuDataImportClients")->trigger();
        auto *dialog = world.main.findChild<frmImportClients *>();
        QVERIFY(dialog && dialog->isVisible());
        dialog->findChild<QPushButton *>("cmdBrowse")->click();
        QCOMPARE(dialog->findChild<QLineEdit *>("txtFileName")->text(), QDir::toNativeSeparators(csv));
        QCOMPARE(dialog->findChild<QTableWidget *>("grdPreview")->rowCount(), 3);
        QCOMPARE(dialog->findChild<QTableWidget *>("grdPreview")->item(2, 1)->text(), "王");
        auto combo = [dialog](int column) { return dialog->findChild<QComboBox *>(QStringLiteral("cboField%1").arg(column)); };
        QCOMPARE((QStringList {combo(0)->currentText(), combo(1)->currentText(), combo(2)->currentText(), combo(7)->currentText()}),
                 (QStringList {"(not imported)", "(not imported)", "First Name", "Housing"}));

        auto *next = dialog->findChild<QPushButton *>("cmdNext");
        next->click();
        QCOMPARE(world.prompts.last().text, "Every client needs Last Name: choose the columns that hold them.");
        combo(1)->setCurrentText("Last Name");
        next->click();

        auto *results = dialog->findChild<QTableView *>("grdResults");
        QVERIFY(results->isVisible());
        const auto result = [results](int row, int column) { return results->model()->index(row, column).data().toString(); };
        QCOMPARE(results->model()->rowCount(), 3);
        QCOMPARE((QStringList {result(1, 1), result(1, 2), result(0, 2)}),
                 (QStringList {"Will be skipped", "Social Security Number '12-34' must have nine digits.",
                               "Housing 'Tent' is not in its list: left empty."}));
        QCOMPARE(dialog->findChild<QListWidget *>("lstUnknown")->item(0)->text(), "Housing: Tent (1 row)");
        QCOMPARE(dialog->findChild<QLabel *>("lblSummary")->text(), "2 rows would be imported, 1 skipped.");

        auto *import = dialog->findChild<QPushButton *>("cmdImport");
        world.prompts.answer(Prompt::No);
        import->click();
        QCOMPARE(world.prompts.last(),
                 (Prompt::Message {"Import Clients", "Import 2 clients? 1 row will be skipped.", Prompt::Icon::Question,
                                   Prompt::Yes | Prompt::No}));
        QCOMPARE(TestDatabase::count("Client"), 0);

        dialog->findChild<QRadioButton *>("optAddLookups")->click();
        QCOMPARE(result(0, 2), "Housing 'Tent' is added to its list.");
        world.prompts.answer(Prompt::Yes);
        import->click();
        QCOMPARE(world.prompts.last().text, "2 rows imported, 1 skipped.");
        QCOMPARE(TestDatabase::scalar("SELECT group_concat(LastName || FirstName || ifnull(HousingDescription, '-'), '|') FROM Client"
                                      " LEFT JOIN Housing USING (HousingID)")
                     .toString(),
                 "GarcíaJoséTent|王秀-");
        QCOMPARE(result(0, 1), "Imported");
        QVERIFY(!import->isEnabled());
        QCOMPARE(dialog->findChild<QPushButton *>("cmdCancel")->text(), "Close");
    }

    // Cancel while the rows go in: the dialog stays, and no client is added.
    void cancelDuringTheImportAddsNothing()
    {
        ClientWorld world;
        const QString csv = world.db.folder() + "/many.csv";
        QByteArray rows = "Last Name,First Name,Social Security Number,Address,City,State\n";
        for (int i = 0; i < 1000; ++i)
            rows += "Doe,Jo," + QByteArray::number(100000000 + i) + "," + QByteArray::number(i) + " Main St,Dayton,OH\n";
        QVERIFY(TestDatabase::writeFile(csv, rows));
        world.prompts.answerFile(csv);
        world.main.findChild<QAction *>("mnuDataImportClients")->trigger();
        auto *dialog = world.main.findChild<frmImportClients *>();
        dialog->findChild<QPushButton *>("cmdBrowse")->click();
        dialog->findChild<QPushButton *>("cmdNext")->click();
        auto *cancel = dialog->findChild<QPushButton *>("cmdCancel");
        QTimer::singleShot(0, cancel, &QPushButton::click);   // runs while the import shows its progress
        world.prompts.answer(Prompt::Yes);
        dialog->findChild<QPushButton *>("cmdImport")->click();
        QCOMPARE(world.prompts.last().text, "The import was cancelled: no client was added.");
        QCOMPARE(TestDatabase::count("Client"), 0);
        QVERIFY(dialog->isVisible());
        QVERIFY(dialog->findChild<QPushButton *>("cmdImport")->isEnabled());
    }
};

QTEST_MAIN(tst_ImportClients)
#include "tst_importclients.moc"
