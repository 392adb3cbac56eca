#include "AccessSample.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "basRegistry.h"
#include "frmMain.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {

void openFile(frmMain &w, ScriptedPrompts &prompts, const QString &path)
{
    prompts.answerFile(path);
    w.findChild<QAction *>(QStringLiteral("mnuFileOpen"))->trigger();
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
}

}   // namespace

// File, Open of an Access database: copied into a TendMark file beside it, which then opens.
class TestOpenAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { basRegistry::DeleteKey(basRegistry::SettingsKey()); }
    void cleanup() { basDatabase::CloseConnection(); }

    void anAccessFileIsCopiedBesideItAndOpened()
    {
        QTemporaryDir dir;
        const QString mdb = dir.filePath(QStringLiteral("Northside.mdb"));
        const QString tmdb = dir.filePath(QStringLiteral("Northside.tmdb"));
        QVERIFY(QFile::copy(AccessSample::path(), mdb));
        const QByteArray before = TestDatabase::fileHash(mdb);
        ScriptedPrompts prompts;
        frmMain w;
        w.startUp();
        prompts.answer(Prompt::Ok);
        openFile(w, prompts, mdb);
        QVERIFY(prompts.fileRequests().last().filter.contains(QStringLiteral("*.mdb")));
        QCOMPARE(prompts.messages().size(), 2);
        QCOMPARE(prompts.messages().at(0),
                 (Prompt::Message {QStringLiteral("Open Access Database"),
                                   QStringLiteral("Northside.mdb is an Access database. TendMark will copy it into a new TendMark file "
                                                  "beside it, Northside.tmdb, and open that.\r\nThe Access file itself is never changed."),
                                   Prompt::Icon::Information, Prompt::Ok | Prompt::Cancel}));
        const QString report = prompts.messages().at(1).text;
        QVERIFY2(report.startsWith(QStringLiteral("Northside.mdb was copied into %1.\r\n").arg(tmdb)), qPrintable(report));
        QVERIFY(report.contains(QRegularExpression(QStringLiteral("\r\n  FoodService: 33 read, 33 written; NumberOfBags 67\r\n"))));
        const QString saved = dir.filePath(QStringLiteral("Northside conversion report.txt"));
        QVERIFY(report.endsWith(QStringLiteral("No value needed changing.\r\n\r\nThe whole report is saved as %1.").arg(saved)));
        QFile file(saved);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QString whole = report;   // the file holds the same without the blank lines and the note where it is
        whole.chop(QStringLiteral("\r\n\r\nThe whole report is saved as %1.").arg(saved).size());
        whole.replace(whole.indexOf(QStringLiteral("\r\n\r\n")), 4, QStringLiteral("\r\n"));
        QCOMPARE(QString::fromUtf8(file.readAll()), whole + QStringLiteral("\r\n"));
        QCOMPARE(w.databasePath(), tmdb);
        QCOMPARE(w.windowTitle(), QStringLiteral("TendMark - Northside Community Food Pantry"));
        QCOMPARE(TestDatabase::count(QStringLiteral("Client")), 12);
        QCOMPARE(TestDatabase::fileHash(mdb), before);
    }

    void anExistingCopyIsReplacedOnlyWhenTheUserSaysSo()
    {
        QTemporaryDir dir;
        const QString mdb = dir.filePath(QStringLiteral("pantry.mdb"));
        const QString tmdb = dir.filePath(QStringLiteral("pantry.tmdb"));
        QVERIFY(QFile::copy(AccessSample::path(), mdb));
        QVERIFY(TestDatabase::writeFile(tmdb, "last year's notes"));
        ScriptedPrompts prompts;
        frmMain w;
        w.startUp();
        prompts.answer(Prompt::Ok);
        prompts.answer(Prompt::No);
        openFile(w, prompts, mdb);
        QCOMPARE(prompts.titles(), (QStringList {QStringLiteral("Open Access Database"), QStringLiteral("Open Access Database")}));
        QCOMPARE(prompts.last().text,
                 QStringLiteral("pantry.tmdb already exists. Do you want to replace it with a new copy of pantry.mdb?"));
        QCOMPARE(prompts.last().buttons, Prompt::Yes | Prompt::No);
        QVERIFY(!basDatabase::IsOpen());
        QCOMPARE(TestDatabase::fileHash(tmdb), QCryptographicHash::hash("last year's notes", QCryptographicHash::Sha256));

        prompts.clear();
        prompts.answer(Prompt::Ok);
        prompts.answer(Prompt::Yes);
        openFile(w, prompts, mdb);
        QCOMPARE(prompts.messages().size(), 3);
        QCOMPARE(w.databasePath(), tmdb);
        QCOMPARE(TestDatabase::count(QStringLiteral("Volunteer")), 4);
    }

    void aFileThatIsNotConvertedLeavesNothingBehind_data()
    {
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<QString>("said");
        QTest::newRow("cancelled") << true << "The conversion was cancelled; no file was written.";
        QTest::newRow("not an Access file")
            << false << "pantry.mdb was not converted.\r\nThe file '%1' cannot be read. It is not an Access database.";
    }

    void aFileThatIsNotConvertedLeavesNothingBehind()
    {
        QFETCH(bool, cancel);
        QFETCH(QString, said);
        QTemporaryDir dir;
        const QString mdb = dir.filePath(QStringLiteral("pantry.mdb"));
        if (cancel)
            QVERIFY(QFile::copy(AccessSample::path(), mdb));
        else
            QVERIFY(TestDatabase::writeFile(mdb, "LastName,FirstName\r\n"));
        ScriptedPrompts prompts;
        frmMain w;
        w.startUp();
        prompts.answer(Prompt::Ok);
        QString shown;
        if (cancel) {
            QTimer::singleShot(0, this, [&shown] {
                for (QWidget *top : QApplication::topLevelWidgets()) {
                    if (top->objectName() == QLatin1String("frmConvertAccess") && top->isVisible()) {
                        shown = top->findChild<QLabel *>(QStringLiteral("lblTable"))->text();
                        top->findChild<QPushButton *>(QStringLiteral("cmdCancel"))->click();
                    }
                }
            });
        }
        openFile(w, prompts, mdb);
        QCOMPARE(prompts.messages().size(), 2);
        QCOMPARE(prompts.last().text, said.arg(mdb));
        if (cancel)
            QCOMPARE(shown, QStringLiteral("Copying States (table 1 of 24)..."));
        QVERIFY(!basDatabase::IsOpen());
        QCOMPARE(filesIn(dir.path()), QStringList {QStringLiteral("pantry.mdb")});
    }
};

QTEST_MAIN(TestOpenAccess)
#include "tst_openaccess.moc"
