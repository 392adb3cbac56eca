#include "AccessFile.h"
#include "AccessSample.h"
#include "MdbConvert.h"
#include "Money.h"
#include "Schema.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QDir>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

using MdbSource::Kind;

namespace {

// The sample file with rows added, tables hidden or a column's type changed, as other files may have them.
class EditedSample : public MdbSource::Reader
{
public:
    EditedSample() : m_file(AccessFile::Open(AccessSample::path(), &m_error)) { }

    QStringList hidden;
    QHash<QString, QList<QVariantMap>> added;   // by table: values by column name, the rest NULL
    QHash<QString, Kind> retyped;   // "Table.Column"
    QString unreadable;   // a table with one row more listed than can be read

    bool ok() const { return m_file != nullptr; }
    QStringList tables() const override
    {
        QStringList names = m_file->tables();
        for (const QString &table : hidden)
            names.removeAll(table);
        return names;
    }
    bool describe(const QString &table, MdbSource::Table *out, QString *error) override
    {
        if (!m_file->describe(table, out, error))
            return false;
        out->rows += added.value(table).size() + (table == unreadable ? 1 : 0);
        for (MdbSource::Column &c : out->columns)
            c.kind = retyped.value(table + u'.' + c.name, c.kind);
        return true;
    }
    bool read(const QString &table, const MdbSource::RowHandler &handler, QString *error) override
    {
        MdbSource::Table shape;
        if (!m_file->read(table, handler, error) || !m_file->describe(table, &shape, error))
            return false;
        for (const QVariantMap &row : added.value(table)) {
            QVariantList values;
            for (const MdbSource::Column &c : shape.columns)
                values << row.value(c.name);
            if (!handler(values))
                break;
        }
        return true;
    }

private:
    QString m_error;
    std::unique_ptr<AccessFile> m_file;
};

// A value of the description file in the form TendMark stores it.
QVariant expected(const QJsonValue &value, const QString &type)
{
    if (value.isNull())
        return {};
    if (type == QLatin1String("Currency"))
        return *Money::parse(value.toString());
    if (type == QLatin1String("Yes/No"))
        return value.toBool() ? 1 : 0;
    if (type == QLatin1String("Double"))
        return value.toDouble();
    if (type == QLatin1String("Long Integer"))
        return value.toInteger();
    return value.toString();
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
}

}   // namespace

class TestMdbConvert : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        Schema::RegisterTriggerFunctions();
        QVERIFY2(QFile::exists(AccessSample::path()), qPrintable(AccessSample::path()));
    }

    void theSampleConvertsWithEveryValueOfItsDescription()
    {
        QTemporaryDir dir;
        const QString target = dir.filePath("pantry.tmdb");
        const QByteArray before = TestDatabase::fileHash(AccessSample::path());
        const MdbConvert::Report report = MdbConvert::ConvertFile(AccessSample::path(), target, false);
        QVERIFY2(report.ok, qPrintable(report.error));
        QCOMPARE(TestDatabase::fileHash(AccessSample::path()), before);
        QCOMPARE(Schema::CheckFile(target), QStringList());
        QCOMPARE(report.changes, QStringList());
        QStringList newColumns;   // TendMark's own columns, which the old program's file cannot have
        for (const char *column : {"Options.FoodVisitIntervalDays", "Options.AgeBrackets", "LabelDetails.PaperSize"})
            newColumns << QStringLiteral("The Access file has no column %1; every row gets TendMark's default.").arg(QLatin1String(column));
        QCOMPARE(report.notes, newColumns);
        QCOMPARE(filesIn(dir.path()), QStringList {"pantry.tmdb"});
        QVERIFY(basDatabase::OpenConnection(target));

        const QJsonObject sample = AccessSample::description();
        const QJsonObject counts = sample.value("rowCounts").toObject();
        QCOMPARE(report.tables.size(), counts.size());
        for (const MdbConvert::TableCount &t : report.tables) {
            QCOMPARE(t.read, counts.value(t.table).toInteger());
            QCOMPARE(t.written, t.read);
            QCOMPARE(qint64(TestDatabase::count(t.table)), t.read);
        }

        const QJsonObject schema = sample.value("schema").toObject();
        const QJsonObject records = sample.value("records").toObject();
        int compared = 0;
        for (auto table = records.begin(); table != records.end(); ++table) {
            const QJsonArray columns = schema.value(table.key()).toArray();
            const QString key
                = columns.at(0).toObject().value("primaryKey").toBool() ? columns.at(0).toObject().value("name").toString() : "rowid";
            for (const QJsonValue &record : table.value().toArray()) {
                const QJsonObject row = record.toObject();
                const QVariant id = key == QLatin1String("rowid") ? QVariant(1) : row.value(key).toVariant();
                for (const QJsonValue &column : columns) {
                    const QString name = column.toObject().value("name").toString();
                    const QVariant got
                        = TestDatabase::scalar(QStringLiteral("SELECT \"%1\" FROM \"%2\" WHERE %3 = ?").arg(name, table.key(), key), {id});
                    const QVariant want = expected(row.value(name), column.toObject().value("type").toString());
                    QVERIFY2(
                        got.isNull() == want.isNull() && (want.isNull() || got == want),
                        qPrintable(
                            QStringLiteral("%1 %2 %3: %4, not %5").arg(table.key(), id.toString(), name, got.toString(), want.toString())));
                    ++compared;
                }
            }
        }
        QVERIFY(compared > 600);

        const QJsonObject checks = sample.value("checks").toObject();
        const QStringList sums = {
            "FoodService NumberOfBags sumNumberOfBags",
            "Payments AmountRequested sumAmountRequested",
            "Payments AmountPaid sumAmountPaid",
            "Income Amount sumAmount",
            "Expenses Amount sumAmount",
        };
        const QStringList lines = MdbConvert::Describe(report);
        for (const QString &sum : sums) {
            const QStringList p = sum.split(u' ');
            const QJsonValue want = checks.value(p[0]).toObject().value(p[2]);
            const QString shown = want.isString() ? want.toString() : QString::number(want.toInt());
            const qint64 stored = TestDatabase::scalar(QStringLiteral("SELECT SUM(%1) FROM %2").arg(p[1], p[0])).toLongLong();
            QCOMPARE(stored, want.isString() ? *Money::parse(shown) : want.toInteger());
            QVERIFY2(
                lines.filter(QRegularExpression(QStringLiteral("^  %1: .*%2 %3(,|$)").arg(p[0], p[1], QRegularExpression::escape(shown))))
                        .size()
                    == 1,
                qPrintable(sum + u'\n' + lines.join(u'\n')));
        }
        QVERIFY(lines.contains("No value needed changing."));
        basDatabase::CloseConnection();
    }

    void valuesTheSchemaWouldRefuseAreKeptOrLeftOutAndListed_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QVariantMap>("row");
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("check");   // a query of the new file, its answer below
        QTest::addColumn<QVariant>("answer");
        const auto client = [](int id, QVariantMap more) {
            more.insert({{"ClientID", id}, {"LastName", "Ngata"}, {"FEMAContacted", false}, {"FEMAEligible", false}});
            return more;
        };
        const auto row = [](const char *tag, const char *table, const QVariantMap &values, const QString &change, const char *check,
                            const QVariant &answer) { QTest::newRow(tag) << table << values << change << check << answer; };
        const QString omegas(48, QChar(0x3A9));
        row("unknown lookup", "Client", client(100, {{"EthnicOriginID", 99}}),
            "Client 100: EthnicOriginID 99 is not in the table EthnicOrigin: left empty.",
            "SELECT EthnicOriginID IS NULL AND LastName = 'Ngata' FROM Client WHERE ClientID = 100", 1);
        row("service of a missing client", "FoodService", {{"FoodServiceID", 500}, {"ClientID", 999}, {"NumberOfBags", 4}},
            "FoodService 500: left out: its ClientID 999 is not in the table Client.",
            "SELECT COUNT(*) FROM FoodService WHERE FoodServiceID = 500", 0);
        row("member without a client", "Family", {{"FamilyMemberID", 200}, {"LastName", "Ngata"}},
            "Family 200: left out: it has no ClientID.", "SELECT COUNT(*) FROM Family WHERE LastName = 'Ngata'", 0);
        row("text too long", "Client", client(101, {{"City", omegas + "\U0001F34Exx"}}),
            "Client 101: City '" + omegas + "\U0001F34Exx' is longer than 50 characters", "SELECT City FROM Client WHERE ClientID = 101",
            omegas + "\U0001F34E");
        row("cut never splits a character", "Volunteer", {{"VolunteerID", 9}, {"State", "W\U0001F34E"}},
            "Volunteer 9: State 'W\U0001F34E' is longer than 2 characters: cut to 'W'.",
            "SELECT State FROM Volunteer WHERE VolunteerID = 9", "W");
        row("punctuated phone", "Client", client(102, {{"HomePhone", "(608) 555-0199"}}),
            "Client 102: HomePhone '(608) 555-0199' kept as digits only, '6085550199'.",
            "SELECT HomePhone FROM Client WHERE ClientID = 102", "6085550199");
        row("no date", "Client", client(103, {{"BirthDate", 0.0}}),
            "Client 103: BirthDate holds 12/30/1899, Access's \"no date\": left empty.",
            "SELECT COUNT(*) FROM Client WHERE ClientID = 103 AND BirthDate IS NULL", 1);
        row("before 1900, with a time", "Family", {{"FamilyMemberID", 201}, {"ClientID", 1}, {"BirthDate", -36522.25}},
            "Family.BirthDate: the time of day was dropped from 1 values; TendMark keeps dates only.",
            "SELECT BirthDate FROM Family WHERE FamilyMemberID = 201", "1800-01-01");
        row("fraction of a cent", "Payments", {{"PaymentID", 300}, {"ClientID", 1}, {"AmountPaid", 12345}},
            "Payments 300: AmountPaid 1.2345 has a fraction of a cent: rounded to 1.23.",
            "SELECT AmountPaid FROM Payments WHERE PaymentID = 300", 123);
        row("empty description", "EthnicOrigin", {{"EthnicOriginID", 50}},
            "EthnicOrigin 50: EthnicOriginDescription is empty, which TendMark does not allow: an empty text kept.",
            "SELECT EthnicOriginDescription = '' FROM EthnicOrigin WHERE EthnicOriginID = 50", 1);
    }

    void valuesTheSchemaWouldRefuseAreKeptOrLeftOutAndListed()
    {
        QFETCH(QString, table);
        QFETCH(QVariantMap, row);
        QFETCH(QString, change);
        QFETCH(QString, check);
        QFETCH(QVariant, answer);
        EditedSample source;
        QVERIFY(source.ok());
        source.added[table] << row;
        QTemporaryDir dir;
        const QString target = dir.filePath("pantry.tmdb");
        const MdbConvert::Report report = MdbConvert::Convert(source, AccessSample::path(), target, false);
        QVERIFY2(report.ok, qPrintable(report.error));
        const QStringList listed = report.changes + report.notes.mid(3);   // after the notes of TendMark's own columns
        QVERIFY2(listed.size() == 1 && listed.constFirst().startsWith(change), qPrintable(listed.join(u'\n')));
        QCOMPARE(TestDatabase::onFile(target, {check}), answer);
        QCOMPARE(Schema::CheckFile(target), QStringList());
    }

    void whatCannotBeConvertedLeavesNoFile_data()
    {
        QTest::addColumn<QStringList>("hidden");
        QTest::addColumn<QString>("retyped");
        QTest::addColumn<QString>("unreadable");
        QTest::addColumn<QString>("message");
        QTest::newRow("tables missing") << QStringList {"Volunteer", "Client"} << QString() << QString()
                                        << "is not a database of the old program: it has no table Client, Volunteer.";
        QTest::newRow("column of another type")
            << QStringList() << "Client.BirthDate" << QString() << "The column Client.BirthDate of the Access file holds text";
        QTest::newRow("rows that cannot be read") << QStringList() << QString() << "Payments"
                                                  << "The Access file lists 11 rows in the table Payments, but 10 could be read";
    }

    void whatCannotBeConvertedLeavesNoFile()
    {
        QFETCH(QStringList, hidden);
        QFETCH(QString, retyped);
        QFETCH(QString, unreadable);
        QFETCH(QString, message);
        EditedSample source;
        QVERIFY(source.ok());
        source.hidden = hidden;
        if (!retyped.isEmpty())
            source.retyped.insert(retyped, Kind::Text);
        source.unreadable = unreadable;
        QTemporaryDir dir;
        const MdbConvert::Report report = MdbConvert::Convert(source, AccessSample::path(), dir.filePath("pantry.tmdb"), false);
        QVERIFY(!report.ok);
        QVERIFY2(report.error.contains(message), qPrintable(report.error));
        QCOMPARE(filesIn(dir.path()), QStringList());
    }

    void cancellingLeavesNoFile()
    {
        QTemporaryDir dir;
        QStringList seen;
        const MdbConvert::Report report
            = MdbConvert::ConvertFile(AccessSample::path(), dir.filePath("pantry.tmdb"), false, [&](const MdbConvert::Step &step) {
                  seen << step.name;
                  return step.name != QLatin1String("Family");
              });
        QVERIFY(!report.ok && report.cancelled);
        QCOMPARE(seen, MdbConvert::Tables().mid(0, MdbConvert::Tables().indexOf("Family") + 1));
        QCOMPARE(MdbConvert::Describe(report), QStringList {"The conversion was cancelled; no file was written."});
        QCOMPARE(filesIn(dir.path()), QStringList());
    }

    void aLongListOfChangesIsCutWhenAsked()
    {
        MdbConvert::Report report;
        report.ok = true;
        report.changes = QStringList {"Client 1: a", "Client 2: b", "Client 3: c"};
        QCOMPARE(MdbConvert::Describe(report).mid(3), (QStringList {"Changes (3):", "  Client 1: a", "  Client 2: b", "  Client 3: c"}));
        QCOMPARE(MdbConvert::Describe(report, 2).mid(3),
                 (QStringList {"Changes (3):", "  Client 1: a", "  Client 2: b", "  ... and 1 more."}));
    }

    void accessValuesBecomeTendMarksValues_data()
    {
        QTest::addColumn<double>("days");
        QTest::addColumn<QString>("date");
        QTest::addColumn<bool>("time");
        QTest::newRow("no date") << 0.0 << "" << false;
        QTest::newRow("no date, a time") << 0.5 << "" << true;
        QTest::newRow("the day after") << 1.0 << "1899-12-31" << false;
        QTest::newRow("the day before, 6 am") << -1.25 << "1899-12-29" << true;
        QTest::newRow("1800") << -36522.0 << "1800-01-01" << false;
        QTest::newRow("1925") << 9177.0 << "1925-02-14" << false;
        QTest::newRow("an afternoon in 1958") << 21292.75 << "1958-04-17" << true;
    }

    void accessValuesBecomeTendMarksValues()
    {
        QFETCH(double, days);
        QFETCH(QString, date);
        QFETCH(bool, time);
        bool hadTime = !time;
        const std::optional<QDate> converted = MdbConvert::DateFromDays(days, &hadTime);
        QCOMPARE(converted ? converted->toString(Qt::ISODate) : QString(), date);
        QCOMPARE(hadTime, time);
    }

    void currencyBecomesCentsRoundingHalfToEven_data()
    {
        QTest::addColumn<qint64>("tenThousandths");
        QTest::addColumn<qint64>("cents");
        QTest::addColumn<QString>("text");
        QTest::newRow("whole") << qint64(2500000) << qint64(25000) << "250.00";
        QTest::newRow("below half") << qint64(12345) << qint64(123) << "1.2345";
        QTest::newRow("half, up to even") << qint64(12350) << qint64(124) << "1.235";
        QTest::newRow("half, down to even") << qint64(12250) << qint64(122) << "1.225";
        QTest::newRow("negative half") << qint64(-12350) << qint64(-124) << "-1.235";
        QTest::newRow("negative above half") << qint64(-12251) << qint64(-123) << "-1.2251";
        QTest::newRow("largest") << std::numeric_limits<qint64>::max() << std::numeric_limits<qint64>::max() / 100
                                 << "922337203685477.5807";
    }

    void currencyBecomesCentsRoundingHalfToEven()
    {
        QFETCH(qint64, tenThousandths);
        QFETCH(qint64, cents);
        QFETCH(QString, text);
        bool rounded = false;
        QCOMPARE(MdbConvert::CentsFromMoney(tenThousandths, &rounded), cents);
        QCOMPARE(rounded, tenThousandths % 100 != 0);
        QCOMPARE(MdbConvert::MoneyText(tenThousandths), text);
    }
};

QTEST_GUILESS_MAIN(TestMdbConvert)
#include "tst_mdbconvert.moc"
