#include "LabelPictures.h"
#include "LabelTemplates.h"
#include "PdfText.h"
#include "RowValues.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "frmLabelPrint.h"
#include "UpDown.h"
#include "basDatabase.h"
#include "frmLabelSetup.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>
#include <QToolButton>

namespace {

template<typename T> T *child(QWidget *w, const char *name)
{
    T *found = w->findChild<T *>(QString::fromLatin1(name));
    if (!found)
        qWarning("no control %s", name);
    return found;
}

QRadioButton *option(QWidget *w, const char *name, int index)
{
    for (QRadioButton *b : w->findChildren<QRadioButton *>(QString::fromLatin1(name)))
        if (b->property("Index").toInt() == index)
            return b;
    return nullptr;
}

void click(QWidget *w, const char *button)
{
    QTest::mouseClick(child<QPushButton>(w, button), Qt::LeftButton);
}

qint64 templateId(const char *name)
{
    return Labels::findTemplate(Labels::loadTemplates(), QString::fromLatin1(name))->id;
}

const char *const setupBoxes[] = {"txtTopMargin",   "txtSideMargin", "txtVerticalPitch", "txtHorizontalPitch",
                                  "txtLabelHeight", "txtLabelWidth", "txtNumberAcross",  "txtNumberDown"};

}   // namespace

class TestLabelDialogs : public QObject
{
    Q_OBJECT

    std::optional<TestDatabase> db;
    std::optional<ScriptedPrompts> prompts;

private Q_SLOTS:
    void init()
    {
        db.emplace();
        prompts.emplace();
    }
    void cleanup()
    {
        prompts.reset();
        db.reset();
    }

    // OK's checks in order, each with its message titled "Print Labels"; nothing is printed.
    void printRefusals_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("copies");
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("message");
        const char *const rows[][5] = {
            {"no templates", "DELETE FROM LabelDetails", "", "", "A label template is required."},
            {"no copies", "", "", "", "Number of copies is required."},
            {"no start position", "", "2", "", "Starting position is required."},
            {"zero copies", "", "0", "1", "Number of copies must be between 1 and 1000."},
            {"start past the sheet", "", "1", "31", "Starting position must be between 1 and 30"},
            {"no clients", "DELETE FROM Client", "1", "1", "There are no clients to print labels for."},
        };
        for (const auto &r : rows)
            QTest::newRow(r[0]) << r[1] << r[2] << r[3] << r[4];
    }
    void printRefusals()
    {
        QFETCH(QString, setup);
        QFETCH(QString, copies);
        QFETCH(QString, start);
        QFETCH(QString, message);
        TestDatabase::insert("Client", {{"LastName", "Doe"}});
        if (!setup.isEmpty())
            basDatabase::Execute(setup);
        frmLabelPrint dialog({});
        for (const auto &[box, text] : {std::pair {"txtNumberOfCopies", copies}, {"txtStartPosition", start}}) {
            child<QLineEdit>(&dialog, box)->clear();
            QTest::keyClicks(child<QLineEdit>(&dialog, box), text);
        }
        child<QComboBox>(&dialog, "cboPrinter")->setCurrentText("PDF file");
        click(&dialog, "cmdOK");
        QCOMPARE(prompts->titles(), QStringList {"Print Labels"});
        QVERIFY2(prompts->last().text.startsWith(message), qPrintable(prompts->last().text));
        QVERIFY(prompts->fileRequests().isEmpty());
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
    }

    // The default template comes first; a click on a label of the miniature sets the start position;
    // the copies box takes digits only and Enter moves on.
    void startPositionAndCopies()
    {
        frmLabelPrint dialog({});
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        auto *templates = child<QComboBox>(&dialog, "cboLabelTemplate");
        QVERIFY(templates->currentText().startsWith("Avery 5160"));
        QCOMPARE(child<QLabel>(&dialog, "lblFont")->text(), "Arial, 10");
        auto *picture = child<LabelSheetPicture>(&dialog, "picPreview");
        QTest::mouseClick(picture, Qt::LeftButton, {}, picture->shapeOf(5).center().toPoint());
        QCOMPARE(child<QLineEdit>(&dialog, "txtStartPosition")->text(), "5");
        QCOMPARE(picture->positionAt(picture->shapeOf(4).center()), 4);
        templates->setCurrentIndex(templates->findText("L7163", Qt::MatchContains));
        QTest::mouseClick(picture, Qt::LeftButton, {}, picture->shapeOf(14).center().toPoint());
        QCOMPARE(child<QLineEdit>(&dialog, "txtStartPosition")->text(), "14");

        auto *copies = child<QLineEdit>(&dialog, "txtNumberOfCopies");
        copies->setFocus();
        copies->clear();
        QTest::keyClicks(copies, "1x2 -3");
        QCOMPARE(copies->text(), "123");
        QTest::keyClick(copies, Qt::Key_Return);
        QVERIFY(!copies->hasFocus());
        QVERIFY(dialog.isVisible());
        QTest::mouseClick(child<UpDown>(&dialog, "udnNumberOfCopies")->findChild<QToolButton *>("cmdUp"), Qt::LeftButton);
        QCOMPARE(copies->text(), "124");
        QVERIFY(prompts->messages().isEmpty());
    }

    // The client options follow the open client window; the labels go to the PDF file chosen.
    void printsTheChosenClientsToPdf()
    {
        TestDatabase::insert("Client", {{"LastName", "Cole"}, {"FirstName", "Cy"}});
        TestDatabase::insert("Client", rowValues("LastName=Adams;FirstName=Al;Address=1 Oak St;City=Dayton;State=OH;ZipCode=45402"));
        const qint64 baker = TestDatabase::insert("Client", {{"LastName", "Baker"}, {"FirstName", "Bea"}});
        {
            frmLabelPrint closed({});
            QVERIFY(!option(&closed, "optClientsToPrint", 1)->isEnabled());
            QVERIFY(!option(&closed, "optPrintWhat", 1)->isEnabled());
        }
        // clients to print (all, the recordset, the current client), starting with the current one, names only, printed
        const std::tuple<int, bool, bool, const char *> cases[]
            = {{0, false, false, "Adams, Al 1 Oak St Dayton, OH 45402 Baker, Bea Cole, Cy"},
               {0, true, true, "Baker, Bea Cole, Cy"},
               {1, false, true, "Adams, Al Cole, Cy"},
               {2, false, true, "Baker, Bea"}};
        for (const auto &[clientsToPrint, startingWithCurrent, namesOnly, expected] : cases) {
            frmLabelPrint dialog({RecordScope::Kind::Client, "SELECT * FROM Client WHERE LastName <> 'Baker'", QString::number(baker)});
            option(&dialog, "optClientsToPrint", clientsToPrint)->setChecked(true);
            option(&dialog, "optPrintWhat", startingWithCurrent ? 1 : 0)->setChecked(true);
            child<QCheckBox>(&dialog, "chkPrintNamesOnly")->setChecked(namesOnly);
            child<QComboBox>(&dialog, "cboPrinter")->setCurrentText("PDF file");
            const QString pdf = db->folder() + QStringLiteral("/labels%1.pdf").arg(clientsToPrint * 2 + startingWithCurrent);
            prompts->answerFile(pdf);
            click(&dialog, "cmdOK");
            QVERIFY2(prompts->messages().isEmpty(), qPrintable(prompts->last().text));
            QCOMPARE(dialog.result(), int(QDialog::Accepted));
            QCOMPARE(pdfText(pdf).simplified(), expected);
        }
    }

    // A printer prints through the preview of the real pages, on the template's paper.
    void printerGoesThroughThePreview()
    {
        TestDatabase::insert("Client", {{"LastName", "Doe"}});
        frmLabelPrint dialog({});
        auto *printers = child<QComboBox>(&dialog, "cboPrinter");
        if (printers->count() < 2)
            printers->insertItem(0, "Office printer");
        printers->setCurrentIndex(0);
        auto *templates = child<QComboBox>(&dialog, "cboLabelTemplate");
        templates->setCurrentIndex(templates->findText("L7160", Qt::MatchContains));
        click(&dialog, "cmdOK");
        QCOMPARE(prompts->previews().size(), 1);
        const Prompt::PreviewRequest &preview = prompts->previews().first();
        QCOMPARE(preview.caption, "Print Labels");
        QCOMPARE(preview.printerName, printers->itemText(0));
        QCOMPARE(preview.pageLayout.pageSize().id(), QPageSize::A4);
        const QString pdf = db->folder() + "/preview.pdf";
        QVERIFY(preview.savePdf(pdf));
        QCOMPARE(pdfText(pdf).simplified(), "Doe");

        // On a printer with unprintable edges the label still lands 7.2 mm + 1/16 in from the paper's edge.
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(db->folder() + "/printer.pdf");
        printer.setPageLayout(preview.pageLayout);
        printer.setPageMargins(QMarginsF(12.7, 12.7, 12.7, 12.7), QPageLayout::Millimeter);
        QVERIFY(preview.paint(&printer));
        const QRegularExpressionMatch word
            = QRegularExpression(QStringLiteral("<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\"[^>]*>Doe</word>"))
                  .match(pdfText(db->folder() + "/printer.pdf", "-bbox"));
        QVERIFY(word.hasMatch());
        QVERIFY2(qAbs(word.captured(1).toDouble() - (7.2 / 25.4 * 72 + 4.5)) < 1.0, qPrintable(word.captured(1)));
        QVERIFY(word.captured(2).toDouble() > 15.15 / 25.4 * 72 && word.captured(2).toDouble() < (15.15 + 38.1) / 25.4 * 72);
    }

    // OK asks for the name, then each measure in order, titled "Label Setup"; nothing is saved until all are there.
    void setupRequiredFieldsInOrder()
    {
        const int before = TestDatabase::count("LabelDetails");
        frmLabelSetup setup(0);
        click(&setup, "cmdNew");
        const char *const steps[][2]
            = {{"A template name is required.", "Mine"}, {"Top Margin is required.", "0.5"},        {"Side Margin is required.", "0.19"},
               {"Vertical Pitch is required.", "1"},     {"Horizontal Pitch is required.", "2.75"}, {"Label Height is required.", "1"},
               {"Label Width is required.", "2.63"},     {"Number Across is required.", "3"},       {"Number Down is required.", "10"}};
        for (int i = 0; i < 9; ++i) {
            prompts->clear();
            click(&setup, "cmdOK");
            QCOMPARE(prompts->messages(), (QList<Prompt::Message> {{"Label Setup", steps[i][0], Prompt::Icon::Exclamation}}));
            QCOMPARE(TestDatabase::count("LabelDetails"), before);
            if (i == 0)
                child<QComboBox>(&setup, "cboTemplate")->setEditText(steps[i][1]);
            else
                child<QLineEdit>(&setup, setupBoxes[i - 1])->setText(steps[i][1]);
        }
        click(&setup, "cmdOK");
        QCOMPARE(TestDatabase::count("LabelDetails"), before + 1);
    }

    // Leaving a box that holds no number says so and keeps the focus there; the arrows step by 0.05; OK checks the template.
    void setupBoxesCheckAndStep()
    {
        frmLabelSetup setup(templateId("5160"));
        setup.show();
        QVERIFY(QTest::qWaitForWindowActive(&setup));
        auto *top = child<QLineEdit>(&setup, "txtTopMargin");
        QCOMPARE(top->text(), "0.50");
        top->setFocus();
        top->setText("half");
        child<QLineEdit>(&setup, "txtSideMargin")->setFocus();
        QCOMPARE(prompts->messages(), (QList<Prompt::Message> {{"Label Setup", "Value must be numeric.", Prompt::Icon::Exclamation}}));
        QTRY_VERIFY(top->hasFocus());
        top->setText("");
        auto *up = child<UpDown>(&setup, "udnTopMargin")->findChild<QToolButton *>("cmdUp");
        QTest::mouseClick(up, Qt::LeftButton);
        QTest::mouseClick(up, Qt::LeftButton);
        QCOMPARE(top->text(), "0.10");
        QTest::mouseClick(child<UpDown>(&setup, "udnTopMargin")->findChild<QToolButton *>("cmdDown"), Qt::LeftButton);
        QCOMPARE(top->text(), "0.05");
        QCOMPARE(prompts->messages().size(), 1);
        // Clicking OK from a box holding no number says so once, and saves nothing.
        top->setText("x");
        click(&setup, "cmdOK");
        QCOMPARE(prompts->messages().size(), 2);
        QVERIFY(setup.isVisible());
        QCOMPARE(Labels::findTemplate(Labels::loadTemplates(), "5160")->topMargin, 0.5);

        // A template whose labels run off the paper is refused, naming the measure; the focus goes to its box.
        QTRY_VERIFY(top->hasFocus());
        top->setText("0.50");
        child<QLineEdit>(&setup, "txtHorizontalPitch")->setText("3.00");
        click(&setup, "cmdOK");
        QCOMPARE(prompts->messages().size(), 3);
        QVERIFY2(prompts->last().text.startsWith("The Horizontal Pitch is too large"), qPrintable(prompts->last().text));
        QVERIFY(child<QLineEdit>(&setup, "txtHorizontalPitch")->hasFocus());
        QCOMPARE(Labels::findTemplate(Labels::loadTemplates(), "5160")->horizontalPitch, 2.75);
    }

    // Saving a changed template keeps the measures left alone at full precision, and only one default;
    // deleting one asks first.
    void setupSavesDeletesAndKeepsOneDefault()
    {
        frmLabelSetup setup(templateId("5162"));
        QCOMPARE(child<QLineEdit>(&setup, "txtLabelHeight")->text(), "1.33");
        child<QLineEdit>(&setup, "txtTopMargin")->setText("0.90");
        child<QCheckBox>(&setup, "chkSetAsDefault")->setChecked(true);
        click(&setup, "cmdOK");
        QVERIFY2(prompts->messages().isEmpty(), qPrintable(prompts->last().text));
        QCOMPARE(setup.savedId(), templateId("5162"));
        const Labels::Template saved = *Labels::findTemplate(Labels::loadTemplates(), "5162");
        QVERIFY(saved.topMargin == 0.9 && saved.height == 1.333333 && saved.isDefault);
        QCOMPARE(TestDatabase::count("LabelDetails", "\"Default\" = 1"), 1);

        // Delete asks first; No keeps the template, Yes deletes it and says so.
        const QString name = Labels::findTemplate(Labels::loadTemplates(), "5167")->description;
        frmLabelSetup other(templateId("5167"));
        const Prompt::Message question {"Delete Label Template?", "Are you sure you want to delete '" + name + "'?", Prompt::Icon::Question,
                                        Prompt::Yes | Prompt::No};
        prompts->answer(Prompt::No);
        click(&other, "cmdDelete");
        QCOMPARE(prompts->messages(), QList<Prompt::Message> {question});
        QCOMPARE(TestDatabase::count("LabelDetails", "Description = ?", {name}), 1);
        prompts->answer(Prompt::Yes);
        click(&other, "cmdDelete");
        QCOMPARE(
            prompts->messages(),
            (QList<Prompt::Message> {question, question, {"Label Setup", "Template '" + name + "' deleted.", Prompt::Icon::Information}}));
        QCOMPARE(TestDatabase::count("LabelDetails", "Description = ?", {name}), 0);
        QVERIFY(child<QComboBox>(&other, "cboTemplate")->findText(name) < 0);
    }
};

QTEST_MAIN(TestLabelDialogs)
#include "tst_labeldialogs.moc"
