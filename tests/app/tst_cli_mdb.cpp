#include "AccessSample.h"
#include "CliRun.h"
#include "TestDatabase.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <unistd.h>

namespace {

QByteArray sampleBytes()
{
    QFile f(AccessSample::path());
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The sample with its client rows changed on their data page as Access changes them:
// the last one deleted (flagged, one row fewer in the table's count), or the first one
// moved to a new place (flagged, its old place left pointing there).
QByteArray withClientRows(const QString &change)
{
    QByteArray bytes = sampleBytes();
    const qsizetype page = bytes.indexOf("900120001") / 4096 * 4096;   // client 1's SSN
    const qsizetype definition = qsizetype(qFromLittleEndian<quint32>(bytes.constData() + page + 4)) * 4096;
    const auto word = [&](qsizetype at) { return qFromLittleEndian<quint16>(bytes.constData() + at); };
    const auto setWord = [&](qsizetype at, quint16 value) { qToLittleEndian(value, bytes.data() + at); };
    const int rows = word(page + 12);
    if (change == QLatin1String("deleted")) {
        setWord(page + 14 + 2 * (rows - 1), word(page + 14 + 2 * (rows - 1)) | 0x8000);
        qToLittleEndian(quint32(rows - 1), bytes.data() + definition + 16);
    } else {
        const quint16 lowest = word(page + 14 + 2 * (rows - 1)) - 4;
        setWord(page + 14, word(page + 14) | 0x8000);
        qToLittleEndian(quint32(page / 4096 << 8), bytes.data() + page + lowest);
        setWord(page + 14 + 2 * rows, lowest | 0x4000);
        setWord(page + 12, quint16(rows + 1));
    }
    return bytes;
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
}

}   // namespace

// tendmark-cli import-mdb, run as a user runs it.
class TestCliMdb : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Converted, checked and private; with --force an existing file is replaced.
    void theSampleConvertsIntoAFileThatPassesItsCheck()
    {
        QTemporaryDir dir;
        const QString out = dir.filePath("pantry.tmdb");
        const CliRun r = cli({"import-mdb", AccessSample::path(), out});
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.err, QString());
        QVERIFY2(r.out.contains("Checked: every table's row count and money and bag totals equal the Access file's"), qPrintable(r.out));
        QCOMPARE(TestDatabase::fileMode(out), 0600);
        QCOMPARE(cli({"import-mdb", AccessSample::path(), out, "--force"}).exitCode, 0);
        QCOMPARE(filesIn(dir.path()), QStringList {"pantry.tmdb"});
    }

    // Rows Access deleted or moved are read as Access shows them; a file that cannot be converted says why and leaves nothing.
    void accessFilesAsFound_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("said");   // on standard output, or on standard error when it fails
        QTest::addColumn<int>("clients");   // in the new file; -1: the conversion fails
        QTest::newRow("deleted") << withClientRows("deleted")
                                 << QStringList {"  Client: 11 read, 11 written\n",
                                                 "  FoodService: 33 read, 29 written; NumberOfBags 53 (Access file: 67)\n",
                                                 "  Family 15: left out: its ClientID 12 is not in the table Client.\n", "Changes (14):\n"}
                                 << 11;
        QTest::newRow("moved") << withClientRows("moved") << QStringList {"  Client: 12 read, 12 written\n", "No value needed changing.\n"}
                               << 12;
        const QByteArray sample = sampleBytes();
        QVERIFY(sample.size() > 100 * 4096);
        QByteArray noise(64 * 1024, '\0');
        QRandomGenerator(14).fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
        QByteArray jet3 = sample;
        jet3[0x14] = 0;
        QByteArray accdb = sample;
        accdb.replace(4, 15, "Standard ACE DB");
        // mdbtools may have said more on standard error before.
        const auto refused = [](const char *tag, const QByteArray &bytes, const char *message) {
            QTest::newRow(tag) << bytes << QStringList {"tendmark-cli import-mdb: ", QString::fromLatin1(message)} << -1;
        };
        refused("empty", QByteArray(), "The file is empty.");
        refused("random bytes", noise, "It is not an Access database.");
        refused("renamed text", QByteArray("LastName,FirstName\r\nDoe,Jane\r\n"), "It is not an Access database.");
        refused("cut mid-page", sample.left(sample.size() / 2 + 100), "The file is cut short");
        refused("cut at a page", sample.left(sample.size() - 40 * 4096), "could be read: the file is damaged.");
        refused("cut in the catalog", sample.left(30 * 4096), "its list of tables is damaged or cut short.");
        refused("jet 3", jet3, "Access 97 or older (Jet 3)");
        refused("accdb", accdb, "Access 2007 or later (.accdb)");
    }

    void accessFilesAsFound()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, said);
        QFETCH(int, clients);
        QTemporaryDir dir;
        QVERIFY(TestDatabase::writeFile(dir.filePath("old.mdb"), bytes));
        const QString out = dir.filePath("new.tmdb");
        const CliRun r = cli({"import-mdb", dir.filePath("old.mdb"), out});
        QCOMPARE(r.exitCode, clients < 0 ? 1 : 0);
        for (const QString &line : said)
            QVERIFY2((clients < 0 ? r.err : r.out).contains(line), qPrintable(line + r.out + r.err));
        if (clients < 0) {
            QCOMPARE(filesIn(dir.path()), QStringList {"old.mdb"});
            return;
        }
        QCOMPARE(TestDatabase::onFile(out, {"SELECT COUNT(*) FROM Client"}).toInt(), clients);
        QCOMPARE(TestDatabase::onFile(out, {"SELECT LastName || FirstName FROM Client WHERE ClientID = 1"}).toString(), "O'BrienPatrick");
    }

    void placesThatCannotBeWrittenAreRefused()
    {
        QTemporaryDir dir;
        // Permissions do not stop the superuser; the kernel's own folder does.
        const QString locked = ::geteuid() == 0 ? "/sys" : dir.filePath("locked");
        if (locked != QLatin1String("/sys")) {
            QVERIFY(QDir().mkdir(locked));
            QVERIFY(QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        }
        const QStringList there = filesIn(locked);
        const CliRun r = cli({"import-mdb", AccessSample::path(), locked + "/new.tmdb"});
        QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QCOMPARE(r.exitCode, 1);
        QVERIFY2(r.err.contains("cannot be written to"), qPrintable(r.err));
        QCOMPARE(filesIn(locked), there);
    }
};

QTEST_GUILESS_MAIN(TestCliMdb)
#include "tst_cli_mdb.moc"
