#include "FoldedText.h"

#include "Schema.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QVariant>
#include <sqlite3.h>

namespace FoldedText {
namespace {

// Letters that keep no base letter when their accents are taken apart.
QString plainSpelling(QChar c)
{
    switch (c.unicode()) {
    case 0x00D0:
    case 0x00F0:
    case 0x0110:
    case 0x0111:
        return QStringLiteral("d");   // Ð ð Đ đ
    case 0x00D8:
    case 0x00F8:
        return QStringLiteral("o");   // Ø ø
    case 0x00C6:
    case 0x00E6:
        return QStringLiteral("ae");   // Æ æ
    case 0x0152:
    case 0x0153:
        return QStringLiteral("oe");   // Œ œ
    case 0x00DF:
    case 0x1E9E:
        return QStringLiteral("ss");   // ß ẞ
    case 0x0141:
    case 0x0142:
        return QStringLiteral("l");   // Ł ł
    case 0x00DE:
    case 0x00FE:
        return QStringLiteral("th");   // Þ þ
    case 0x0126:
    case 0x0127:
        return QStringLiteral("h");   // Ħ ħ
    case 0x0131:
        return QStringLiteral("i");   // ı
    case 0x2018:
    case 0x2019:
    case 0x02BC:
    case 0x0060:
    case 0x00B4:
        return QStringLiteral("'");
    case 0x2010:
    case 0x2011:
    case 0x2012:
    case 0x2013:
    case 0x2014:
        return QStringLiteral("-");
    default:
        return {};
    }
}

// Street words as the post office abbreviates them.
const QHash<QString, QString> &streetWords()
{
    static const QHash<QString, QString> words = {
        {QStringLiteral("street"), QStringLiteral("st")},      {QStringLiteral("str"), QStringLiteral("st")},
        {QStringLiteral("avenue"), QStringLiteral("ave")},     {QStringLiteral("av"), QStringLiteral("ave")},
        {QStringLiteral("road"), QStringLiteral("rd")},        {QStringLiteral("drive"), QStringLiteral("dr")},
        {QStringLiteral("boulevard"), QStringLiteral("blvd")}, {QStringLiteral("lane"), QStringLiteral("ln")},
        {QStringLiteral("court"), QStringLiteral("ct")},       {QStringLiteral("place"), QStringLiteral("pl")},
        {QStringLiteral("circle"), QStringLiteral("cir")},     {QStringLiteral("terrace"), QStringLiteral("ter")},
        {QStringLiteral("highway"), QStringLiteral("hwy")},    {QStringLiteral("parkway"), QStringLiteral("pkwy")},
        {QStringLiteral("apartment"), QStringLiteral("apt")},  {QStringLiteral("unit"), QStringLiteral("apt")},
        {QStringLiteral("suite"), QStringLiteral("ste")},      {QStringLiteral("north"), QStringLiteral("n")},
        {QStringLiteral("south"), QStringLiteral("s")},        {QStringLiteral("east"), QStringLiteral("e")},
        {QStringLiteral("west"), QStringLiteral("w")},
    };
    return words;
}

void foldFunction(sqlite3_context *context, int, sqlite3_value **argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
        sqlite3_result_null(context);
        return;
    }
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(argv[0])), sqlite3_value_bytes(argv[0]));
    const bool address = sqlite3_user_data(context) != nullptr;
    const QByteArray folded = (address ? FoldedText::address(text) : name(text)).toUtf8();
    sqlite3_result_text(context, folded.constData(), int(folded.size()), SQLITE_TRANSIENT);
}

int registerOnConnection(sqlite3 *db, const char **, const sqlite3_api_routines *)
{
    static int addressMark = 0;
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    sqlite3_create_function(db, "tendmark_fold", 1, flags, nullptr, foldFunction, nullptr, nullptr);
    sqlite3_create_function(db, "tendmark_fold_address", 1, flags, &addressMark, foldFunction, nullptr, nullptr);
    return SQLITE_OK;
}

struct Key
{
    const char *column;
    const char *function;
    const char *source;
};

struct KeyedTable
{
    const char *table;
    const char *key;
    QList<Key> keys;
};

const QList<KeyedTable> &keyedTables()
{
    static const QList<KeyedTable> tables = {
        {"Client",
         "ClientID",
         {{"LastNameKey", "tendmark_fold", "LastName"},
          {"FirstNameKey", "tendmark_fold", "FirstName"},
          {"AddressKey", "tendmark_fold_address", "Address"},
          {"CityKey", "tendmark_fold", "City"}}},
        {"Family", "FamilyMemberID", {{"LastNameKey", "tendmark_fold", "LastName"}, {"FirstNameKey", "tendmark_fold", "FirstName"}}},
        {"Volunteer",
         "VolunteerID",
         {{"LastNameKey", "tendmark_fold", "LastName"},
          {"FirstNameKey", "tendmark_fold", "FirstName"},
          {"AddressKey", "tendmark_fold_address", "Address"}}},
    };
    return tables;
}

// The lookups whose description the client list sorts by: Client.<lookup>Key holds the folded description.
const char *const sortedLookups[] = {"EthnicOrigin", "MaritalStatus"};

}   // namespace

QString name(const QString &text)
{
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    QString out;
    out.reserve(decomposed.size());
    bool blank = false;
    for (const QChar c : decomposed) {
        const QChar::Category category = c.category();
        if (category == QChar::Mark_NonSpacing || category == QChar::Mark_SpacingCombining || category == QChar::Mark_Enclosing)
            continue;
        if (c.isSpace()) {
            blank = !out.isEmpty();
            continue;
        }
        if (blank)
            out += QLatin1Char(' ');
        blank = false;
        const QString plain = plainSpelling(c);
        out += plain.isEmpty() ? QString(c) : plain;
    }
    return out.toCaseFolded();
}

QString address(const QString &text)
{
    QString spaced = name(text);
    for (QChar &c : spaced)
        if (c.isPunct() && c != QLatin1Char('#') && c != QLatin1Char('-') && c != QLatin1Char('/'))
            c = QLatin1Char(' ');
    spaced.replace(QLatin1Char('#'), QStringLiteral(" apt "));
    QStringList words = spaced.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString &word : words)
        word = streetWords().value(word, word);
    return words.join(QLatin1Char(' '));
}

QStringList keyColumns(const QString &table)
{
    QStringList columns;
    for (const KeyedTable &t : keyedTables())
        if (table.compare(QLatin1String(t.table), Qt::CaseInsensitive) == 0)
            for (const Key &key : t.keys)
                columns << QLatin1String(key.column);
    if (table.compare(QLatin1String("Client"), Qt::CaseInsensitive) == 0)
        for (const char *lookup : sortedLookups)
            columns << QLatin1String(lookup) + QStringLiteral("Key");
    return columns;
}

QString valueOver(const QString &table, const QString &column, const QString &row, QString *source)
{
    for (const KeyedTable &t : keyedTables())
        if (table.compare(QLatin1String(t.table), Qt::CaseInsensitive) == 0)
            for (const Key &key : t.keys)
                if (column == QLatin1String(key.column)) {
                    *source = QLatin1String(key.source);
                    return QStringLiteral("%1(%2.%3)").arg(QLatin1String(key.function), row, *source);
                }
    *source = column;
    return row + QLatin1Char('.') + column;
}

void RegisterSqlFunctions()
{
    static const bool registered = sqlite3_auto_extension(reinterpret_cast<void (*)()>(registerOnConnection)) == SQLITE_OK;
    Q_UNUSED(registered);
}

void RegisterSqlFunctions(const QSqlDatabase &db)
{
    RegisterSqlFunctions();
    const QVariant handle = db.driver()->handle();
    if (handle.isValid() && qstrcmp(handle.typeName(), "sqlite3*") == 0)
        if (sqlite3 *raw = *static_cast<sqlite3 *const *>(handle.constData()))
            registerOnConnection(raw, nullptr, nullptr);
}

bool AddKeyColumns(QSqlDatabase db, QString *error)
{
    RegisterSqlFunctions(db);
    for (const KeyedTable &t : keyedTables()) {
        const QString table = QLatin1String(t.table);
        QStringList sets;
        QStringList sources;
        QStringList fills;
        for (const Key &key : t.keys) {
            const QString column = QLatin1String(key.column);
            const QString function = QLatin1String(key.function);
            const QString source = QLatin1String(key.source);
            if (!Schema::Exec(db, QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 TEXT").arg(table, column), error))
                return false;
            sets << QStringLiteral("%1 = %2(NEW.%3)").arg(column, function, source);
            fills << QStringLiteral("%1 = %2(%3)").arg(column, function, source);
            sources << source;
        }
        const QString update
            = QStringLiteral("UPDATE %1 SET %2 WHERE %3 = NEW.%3;").arg(table, sets.join(QStringLiteral(", ")), QLatin1String(t.key));
        if (!Schema::Exec(db, QStringLiteral("CREATE TRIGGER %1KeysInsert AFTER INSERT ON %1 BEGIN %2 END").arg(table, update), error)
            || !Schema::Exec(db,
                             QStringLiteral("CREATE TRIGGER %1KeysUpdate AFTER UPDATE OF %2 ON %1 BEGIN %3 END")
                                 .arg(table, sources.join(QStringLiteral(", ")), update),
                             error)
            || !Schema::Exec(db, QStringLiteral("UPDATE %1 SET %2").arg(table, fills.join(QStringLiteral(", "))), error)
            || !Schema::Exec(
                db, QStringLiteral("CREATE INDEX %1ByNameKey ON %1 (LastNameKey, FirstNameKey, %2)").arg(table, QLatin1String(t.key)),
                error)
            || !Schema::Exec(db, QStringLiteral("CREATE INDEX %1ByFirstNameKey ON %1 (FirstNameKey)").arg(table), error))
            return false;
    }
    return Schema::Exec(db, QStringLiteral("DROP INDEX IF EXISTS ClientByAddress"), error)
        && Schema::Exec(db, QStringLiteral("CREATE INDEX ClientByAddressKey ON Client (AddressKey, CityKey, State)"), error);
}

bool AddLookupKeys(QSqlDatabase db, QString *error)
{
    RegisterSqlFunctions(db);
    for (const char *name : sortedLookups) {
        const QString lookup = QLatin1String(name);
        const QString description = QStringLiteral("(SELECT tendmark_fold(%1Description) FROM %1 WHERE %1ID = %2.%1ID)");
        const QString follow = QStringLiteral("UPDATE Client SET %1Key = %2 WHERE ClientID = NEW.ClientID;")
                                   .arg(lookup, description.arg(lookup, QStringLiteral("NEW")));
        if (!Schema::Exec(db, QStringLiteral("ALTER TABLE Client ADD COLUMN %1Key TEXT").arg(lookup), error)
            || !Schema::Exec(db,
                             QStringLiteral("CREATE TRIGGER Client%1KeyInsert AFTER INSERT ON Client WHEN NEW.%1ID IS NOT NULL "
                                            "BEGIN %2 END")
                                 .arg(lookup, follow),
                             error)
            || !Schema::Exec(
                db, QStringLiteral("CREATE TRIGGER Client%1KeyUpdate AFTER UPDATE OF %1ID ON Client BEGIN %2 END").arg(lookup, follow),
                error)
            || !Schema::Exec(db,
                             QStringLiteral("CREATE TRIGGER %1KeyUpdate AFTER UPDATE OF %1Description ON %1 BEGIN "
                                            "UPDATE Client SET %1Key = tendmark_fold(NEW.%1Description) WHERE %1ID = NEW.%1ID; END")
                                 .arg(lookup),
                             error)
            || !Schema::Exec(db,
                             QStringLiteral("UPDATE Client SET %1Key = %2 WHERE %1ID IS NOT NULL")
                                 .arg(lookup, description.arg(lookup, QStringLiteral("Client"))),
                             error)
            || !Schema::Exec(db, QStringLiteral("CREATE INDEX ClientBy%1Key ON Client (%1Key)").arg(lookup), error))
            return false;
    }
    return true;
}

}   // namespace FoldedText
