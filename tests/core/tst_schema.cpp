#include "Backups.h"
#include "LabelTemplates.h"
#include "LookupTables.h"
#include "OptionsStore.h"
#include "Schema.h"
#include "ScriptedPrompts.h"
#include "SearchQueries.h"
#include "TestDatabase.h"
#include "TmError.h"
#include "basDatabase.h"
#include "basErrorHandler.h"

#include <QFile>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

class TestSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newDatabaseHasTheDeclaredColumnsAndContents()
    {
        TestDatabase db;
        QVERIFY(basDatabase::Field("Volunteer", "EmailAddress").isValid());   // the editor's spelling finds the column

        // Column declarations are read at run time; the field rules' test shows the text, date, money, memo and required ones.
        QCOMPARE(basDatabase::Field("Client", "FEMAContacted").type, FieldInfo::Type::Boolean);
        QCOMPARE(basDatabase::Field("LabelDetails", "Height").type, FieldInfo::Type::Double);
        QVERIFY(!basDatabase::Field("Client", "LastName").required);
        QVERIFY(basDatabase::Field("Client", "ClientID").isKey);

        // The standard contents.
        QCOMPARE(TestDatabase::count("States"), 56);
        QCOMPARE(TestDatabase::scalar("SELECT group_concat(GenderCode, ',') FROM Gender").toString(), QStringLiteral("M,F"));
        for (const char *t : {"EducationLevel", "EthnicOrigin", "ExpenseCategories", "FoodServiceTypes", "Housing", "IncomeSources",
                              "MaritalStatus", "OtherAssistance", "PaymentTypes", "Relationships", "ReligiousPreference"})
            QVERIFY2(TestDatabase::count(t) >= 4, t);
        QCOMPARE(TestDatabase::count("Organization"), 1);
        QCOMPARE(TestDatabase::count("Options"), 1);
        QCOMPARE(OptionsStore::readOptions(), DatabaseOptions {});
    }

    void lookupReferencesAndValuesAreEnforced()
    {
        TestDatabase db;
        const qint64 origin = TestDatabase::lookupId("EthnicOrigin", "Asian");
        const qint64 client = TestDatabase::insert("Client", {{"LastName", "Doe"}, {"EthnicOriginID", origin}});
        QVERIFY_THROWS_EXCEPTION(TmError, TestDatabase::insert("Client", {{"LastName", "X"}, {"EthnicOriginID", 9999}}));
        QVERIFY_THROWS_EXCEPTION(TmError, TestDatabase::insert("FoodService", {{"ClientID", 9999}}));
        QVERIFY_THROWS_EXCEPTION(TmError, TestDatabase::insert("Payments", {{"ClientID", client}, {"AmountPaid", 12.5}}));
        QVERIFY_THROWS_EXCEPTION(TmError, TestDatabase::insert("Client", {{"LastName", "X"}, {"BirthDate", "12/31/1980"}}));
        ScriptedPrompts prompts;
        QVERIFY(!basDatabase::DeleteItemFromTable("EthnicOrigin", "EthnicOriginID", QString::number(origin)));
        QCOMPARE(prompts.last().title, QStringLiteral("Application Error"));
        QVERIFY(prompts.last().text.contains("basDatabase.DeleteItemFromTable"));
        QCOMPARE(TestDatabase::count("EthnicOrigin", "EthnicOriginID = ?", {origin}), 1);
    }

    // Check names a broken reference; creating over a file needs to be asked for, and leaves a sound file.
    void checkAndReplace()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.tmdb");
        QVERIFY(Schema::CreateDatabase(path, false, nullptr));
        QVERIFY(TestDatabase::onFile(path, {"INSERT INTO Family (ClientID, FirstName) VALUES (42, 'Orphan')"}).isValid());
        const QStringList problems = Schema::CheckFile(path);
        QCOMPARE(problems.size(), 1);
        QVERIFY(problems.first().contains("Family"));
        QString error;
        QVERIFY(!Schema::CreateDatabase(path, false, &error));
        QVERIFY(error.contains("already exists"));
        QVERIFY(Schema::CreateDatabase(path, true, &error));
        QVERIFY(Schema::CheckFile(path).isEmpty());
    }

    // An older file is backed up as it was, then gains what this version adds; its rows and templates stay as they were.
    void olderFileIsBackedUpThenUpgraded()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("old.tmdb"));
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("v1"));
            db.setDatabaseName(path);
            QVERIFY(db.open());
            QFile schema(QStringLiteral(TENDMARK_SOURCE_DIR "/core/schema/schema-v1.sql"));
            QVERIFY(schema.open(QIODevice::ReadOnly));
            QString error;
            QVERIFY2(Schema::RunScript(db, QString::fromUtf8(schema.readAll()), &error), qPrintable(error));
            for (const QString &sql :
                 {QStringLiteral("PRAGMA application_id = %1").arg(Schema::ApplicationId), QStringLiteral("PRAGMA user_version = 1"),
                  QStringLiteral("INSERT INTO EthnicOrigin (EthnicOriginDescription) VALUES ('Ótra')"),
                  QStringLiteral("INSERT INTO Client (LastName, EthnicOriginID) VALUES ('Óld', last_insert_rowid())"),
                  QStringLiteral("INSERT INTO LabelDetails (Description, Height, Width, TopMargin, SideMargin, VerticalPitch, "
                                 "HorizontalPitch, NumberAcross, NumberDown, \"Default\") VALUES "
                                 "('Avery 5160 Address (1 x 2 5/8 in, 30 per sheet)', 1, 2.625, 0.52, 0.19, 1, 2.75, 3, 10, 0), "
                                 "('Our own', 1, 4, 0.5, 0.15, 1, 4.2, 2, 10, 1)")})
                QVERIFY2(QSqlQuery(db).exec(sql), qPrintable(sql));
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("v1"));
        QCOMPARE(Schema::ExamineForOpening(path).state, Schema::FileState::Ok);
        QString error;
        QVERIFY2(basDatabase::OpenConnection(path, &error), qPrintable(error));
        const QList<Labels::Template> templates = Labels::loadTemplates();
        QCOMPARE(basDatabase::ScalarValue(QStringLiteral("SELECT LastNameKey || '/' || EthnicOriginKey FROM Client")).toString(),
                 QStringLiteral("old/otra"));
        basDatabase::Execute(QStringLiteral("DELETE FROM Client"));
        const int logged = basDatabase::ScalarValue(QStringLiteral("SELECT count(*) FROM AuditLog WHERE Operation = 'delete'")).toInt();
        basDatabase::CloseConnection();
        QCOMPARE(logged, 1);
        QCOMPARE(Schema::CheckFile(path), QStringList());
        QCOMPARE(Schema::InspectFile(path).version, Schema::CurrentVersion);
        const QList<Backups::Info> backups = Backups::List(path);
        QCOMPARE(backups.size(), 1);
        QCOMPARE(backups.at(0).clients, 1);
        QCOMPARE(Schema::InspectFile(backups.at(0).path).version, 1);
        // The sheets it lacked are added, with the paper size; its own default stays the one default.
        QCOMPARE(templates.size(), 12);
        QCOMPARE(Labels::defaultTemplate(templates)->description, QStringLiteral("Our own"));
        QCOMPARE(Labels::findTemplate(templates, "5160")->topMargin, 0.52);
        QCOMPARE(Labels::findTemplate(templates, "Our own")->paper, Labels::Paper::Letter);
        QCOMPARE(Labels::findTemplate(templates, "L7165")->paper, Labels::Paper::A4);
    }

    // Every foreign key to a lookup table is listed, and nothing else is: a missing one
    // would let the lookup editor delete an item that records still refer to.
    void referencesMatchTheForeignKeys()
    {
        TestDatabase db;
        QSet<QString> keys;
        QSqlQuery tables = basDatabase::Execute(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"));
        while (tables.next()) {
            QSqlQuery fk
                = basDatabase::Execute(QStringLiteral("SELECT \"table\", \"from\" FROM pragma_foreign_key_list(?)"), {tables.value(0)});
            while (fk.next())
                if (LookupTables::byName(fk.value(0).toString()))
                    keys << tables.value(0).toString() + u'.' + fk.value(1).toString() + u'>' + fk.value(0).toString();
        }
        QSet<QString> listed;
        for (const LookupTables::LookupTable &t : LookupTables::all())
            for (const LookupTables::Reference &r : t.references)
                listed << QLatin1String(r.table) + u'.' + QLatin1String(r.column) + u'>' + t.name();
        QCOMPARE(listed, keys);
    }

    void anItemIsInUseOnceAnyReferringColumnHoldsIt_data()
    {
        QTest::addColumn<QString>("lookup");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("column");
        for (const LookupTables::LookupTable &t : LookupTables::all())
            for (const LookupTables::Reference &r : t.references)
                QTest::addRow("%s.%s", r.table, r.column) << t.name() << QString::fromLatin1(r.table) << QString::fromLatin1(r.column);
    }

    void anItemIsInUseOnceAnyReferringColumnHoldsIt()
    {
        QFETCH(QString, lookup);
        QFETCH(QString, table);
        QFETCH(QString, column);
        TestDatabase db;
        const LookupTables::LookupTable &t = *LookupTables::byName(lookup);
        const qint64 item = TestDatabase::insert(lookup, {{QLatin1String(t.descriptionColumn), QStringLiteral("Unused so far")}});
        QVERIFY(!LookupTables::inUse(t, item));
        QVariantMap row {{column, item}};
        if (table != QLatin1String("Client"))
            row.insert(QStringLiteral("ClientID"), TestDatabase::insert(QStringLiteral("Client"), {{"LastName", "Doe"}}));
        TestDatabase::insert(table, row);
        QVERIFY(LookupTables::inUse(t, item));
        QVERIFY(!LookupTables::inUse(t, item + 1));
    }

    // The client list sorts by a client's ethnic origin and marital status as the lookups describe them now.
    void lookupSortKeysFollowTheClientAndTheLookup()
    {
        TestDatabase db;
        const qint64 asian = TestDatabase::lookupId("EthnicOrigin", "Asian");
        const qint64 married = TestDatabase::lookupId("MaritalStatus", "Married");
        const qint64 a = TestDatabase::insert("Client", {{"LastName", "A"}, {"EthnicOriginID", asian}, {"MaritalStatusID", married}});
        const qint64 b = TestDatabase::insert("Client", {{"LastName", "B"}});
        auto keys = [](qint64 client) {
            return TestDatabase::scalar("SELECT quote(EthnicOriginKey) || ' ' || quote(MaritalStatusKey) FROM Client WHERE ClientID = ?",
                                        {client})
                .toString();
        };
        QCOMPARE(keys(a), QStringLiteral("'asian' 'married'"));
        QCOMPARE(keys(b), QStringLiteral("NULL NULL"));
        basDatabase::Execute("UPDATE Client SET EthnicOriginID = ?, MaritalStatusID = NULL WHERE ClientID = ?", {asian, b});
        basDatabase::Execute("UPDATE EthnicOrigin SET EthnicOriginDescription = 'ÁSIAN Pacific' WHERE EthnicOriginID = ?", {asian});
        QCOMPARE(keys(b), QStringLiteral("'asian pacific' NULL"));
        basDatabase::Execute("UPDATE Client SET EthnicOriginID = NULL WHERE ClientID = ?", {a});
        QCOMPARE(keys(a), QStringLiteral("NULL 'married'"));
    }

    // A search for three characters or more finds on the trigram indexes what LIKE finds, through edits and deletes.
    void searchIndexesFollowTheRows()
    {
        TestDatabase db;
        const qint64 a = TestDatabase::insert(
            "Client", {{"LastName", "Nguyễn"}, {"HomePhone", "9375551234"}, {"MobilePhone", "9375559876"}, {"Address", "12 Main Street"}});
        const qint64 b = TestDatabase::insert("Client", {{"LastName", "Anguyen \"Jr\""}, {"HomePhone", "5551239999"}});
        const qint64 kid = TestDatabase::insert("Family", {{"ClientID", b}, {"LastName", "O'Nguyen"}});
        // What the search finds, read either way the picker may read it (-1 when they differ).
        auto found = [](const QString &field, const QString &text) {
            const SearchQueries::Query search = SearchQueries::client(field, text);
            auto read = [&](const QString &sql) {
                QList<qint64> ids;
                for (QSqlQuery q = basDatabase::Execute(sql, search.binds); q.next();)
                    ids << q.value(0).toLongLong();
                return ids;
            };
            const QList<qint64> ids = read(search.sql);
            return search.manySql.isEmpty() || read(search.manySql) == ids ? ids : QList<qint64> {-1};
        };
        QCOMPARE(found("Home Phone", "1234"), QList<qint64>({a}));
        QCOMPARE(found("Home Phone", "(555) 1239"), QList<qint64>({b}));
        QCOMPARE(found("Home Phone", "99"), QList<qint64>({b}));   // too short for the index: read with LIKE
        QCOMPARE(found("Mobile Phone", "1234"), QList<qint64>());
        QCOMPARE(found("Last Name", "NGUY"), QList<qint64>({b, a}));
        QCOMPARE(found("Last Name", "n \"jr"), QList<qint64>({b}));
        QCOMPARE(found("Last Name", "n_y"), QList<qint64>());   // what LIKE would take for a wildcard is a letter
        QCOMPARE(found("Address", "main st"), QList<qint64>({a}));
        QCOMPARE(found("Family Member Last Name", "o'ng"), QList<qint64>({b}));
        basDatabase::Execute("UPDATE Client SET HomePhone = '9375550000', LastName = 'Tran' WHERE ClientID = ?", {a});
        basDatabase::Execute("UPDATE Family SET LastName = 'Tran' WHERE FamilyMemberID = ?", {kid});
        QCOMPARE(found("Home Phone", "1234"), QList<qint64>());
        QCOMPARE(found("Home Phone", "0000"), QList<qint64>({a}));
        QCOMPARE(found("Last Name", "nguy"), QList<qint64>({b}));
        QCOMPARE(found("Family Member Last Name", "tran"), QList<qint64>({b}));
        QVERIFY(basDatabase::DeleteItemFromTable("Client", "ClientID", QString::number(a)));
        QCOMPARE(found("Mobile Phone", "9876"), QList<qint64>());
        for (const char *index : {"ClientText", "FamilyText"})
            basDatabase::Execute(QStringLiteral("INSERT INTO %1 (%1, rank) VALUES ('integrity-check', 1)").arg(QLatin1String(index)));
    }
};

QTEST_GUILESS_MAIN(TestSchema)
#include "tst_schema.moc"
