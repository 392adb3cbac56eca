#include "MdbConvert.h"

#include "AccessFile.h"
#include "FoldedText.h"
#include "Money.h"
#include "Schema.h"
#include "SqlText.h"
#include "Transaction.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryFile>

namespace MdbConvert {

namespace {

using MdbSource::Kind;

QString tr(const char *text)
{
    return QCoreApplication::translate("MdbConvert", text);
}

enum class Target { Integer, Text, Memo, Date, Money, YesNo, Double };

struct Column
{
    QString name;
    Target type = Target::Text;
    int length = 0;   // for Text: the declared size
    bool notNull = false;
    bool key = false;
    int source = -1;   // the Access column it is read from, -1 when the file has none
    QString references;   // the table a foreign key points to
    bool digits = false;   // phone numbers and social security numbers: digits only
    bool totalled = false;   // money and bags: checked against the source's total
};

Target targetType(const QString &declared, int *length)
{
    const QString type = declared.toUpper();
    static const QRegularExpression varchar(QStringLiteral("^VARCHAR\\((\\d+)\\)$"));
    if (const auto m = varchar.match(type); m.hasMatch()) {
        *length = m.captured(1).toInt();
        return Target::Text;
    }
    if (type == QLatin1String("DATE"))
        return Target::Date;
    if (type == QLatin1String("CURRENCY"))
        return Target::Money;
    if (type == QLatin1String("BOOLEAN"))
        return Target::YesNo;
    if (type == QLatin1String("DOUBLE"))
        return Target::Double;
    if (type == QLatin1String("INTEGER"))
        return Target::Integer;
    return Target::Memo;
}

bool accepts(Target target, Kind kind)
{
    switch (target) {
    case Target::Integer:
        return kind == Kind::Integer;
    case Target::Text:
    case Target::Memo:
        return kind == Kind::Text || kind == Kind::Memo;
    case Target::Date:
        return kind == Kind::DateTime;
    case Target::Money:
        return kind == Kind::Money;
    case Target::YesNo:
        return kind == Kind::YesNo;
    case Target::Double:
        return kind == Kind::Float || kind == Kind::Integer;
    }
    return false;
}

QString kindName(Kind kind)
{
    switch (kind) {
    case Kind::Text:
        return tr("text");
    case Kind::Memo:
        return tr("memo");
    case Kind::Integer:
        return tr("whole numbers");
    case Kind::Money:
        return tr("currency");
    case Kind::Float:
        return tr("decimal numbers");
    case Kind::DateTime:
        return tr("dates");
    case Kind::YesNo:
        return tr("yes/no values");
    case Kind::Other:
        break;
    }
    return tr("binary data");
}

// The columns of a TendMark table, each matched with the Access column of the same name.
QList<Column> targetColumns(QSqlDatabase db, const QString &table, const MdbSource::Table &source)
{
    QList<Column> columns;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT name, type, \"notnull\", pk FROM pragma_table_info(?) ORDER BY cid"));
    q.addBindValue(table);
    q.exec();
    const QStringList derived = FoldedText::keyColumns(table);
    while (q.next()) {
        Column c;
        c.name = q.value(0).toString();
        if (derived.contains(c.name))
            continue;
        c.type = targetType(q.value(1).toString(), &c.length);
        c.notNull = q.value(2).toBool();
        c.key = q.value(3).toInt() > 0;
        for (int i = 0; i < source.columns.size(); ++i)
            if (source.columns.at(i).name.compare(c.name, Qt::CaseInsensitive) == 0)
                c.source = i;
        c.digits
            = c.name == QLatin1String("SocialSecurityNumber") || c.name == QLatin1String("Fax") || c.name.endsWith(QLatin1String("Phone"));
        c.totalled = c.type == Target::Money || c.name == QLatin1String("NumberOfBags");
        columns << c;
    }
    q.prepare(QStringLiteral("SELECT \"from\", \"table\" FROM pragma_foreign_key_list(?)"));
    q.addBindValue(table);
    q.exec();
    while (q.next())
        for (Column &c : columns)
            if (c.name == q.value(0).toString())
                c.references = q.value(1).toString();
    return columns;
}

class Copier
{
    Q_DECLARE_TR_FUNCTIONS(MdbConvert)   // its messages read with the rest of the conversion's

public:
    Copier(MdbSource::Reader &source, const Progress &progress, Report *report) : m_source(source), m_progress(progress), m_report(report)
    { }

    bool run(QSqlDatabase db, QString *error);

private:
    bool copyTable(QSqlDatabase db, int index, QString *error);
    // The row's values in TendMark's forms; false when the row cannot be kept.
    bool convertRow(const QString &table, const QList<Column> &columns, const QVariantList &in, QVariantList *out);
    void change(const QString &table, const QString &row, const QString &what)
    {
        m_report->changes << QStringLiteral("%1 %2: %3").arg(table, row, what);
    }
    bool verify(QSqlDatabase db, const QString &table, const QList<Column> &columns, TableCount *count, QString *error);

    MdbSource::Reader &m_source;
    const Progress &m_progress;
    Report *m_report;
    QHash<QString, QSet<qint64>> m_keys;   // the keys written of the tables others refer to
    // Of the table being copied, by column: totals over every row read and over the
    // rows written (as written), and how many times of day were dropped.
    QList<qint64> m_sourceTotals;
    QList<qint64> m_keptTotals;
    QList<qint64> m_timesDropped;
    qint64 m_rowNumber = 0;
};

bool Copier::run(QSqlDatabase db, QString *error)
{
    // The file is a temporary one until it is complete; the final VACUUM writes it durably.
    if (!Schema::Exec(db, QStringLiteral("PRAGMA synchronous = OFF"), error)
        || !Schema::Exec(db, QStringLiteral("PRAGMA cache_size = -65536"), error))
        return false;
    Transaction transaction(db);
    if (!transaction.active()) {
        *error = transaction.error();
        return false;
    }
    // The new file starts empty of the standard lookups, so the Access file's keys are kept as they are.
    for (auto it = Tables().crbegin(); it != Tables().crend(); ++it)
        if (!Schema::Exec(db, QStringLiteral("DELETE FROM %1").arg(SqlText::id(*it)), error))
            return false;
    if (!Schema::Exec(db, QStringLiteral("DELETE FROM sqlite_sequence"), error))
        return false;
    // The audit log of a new file starts empty: its insert triggers are set aside while the rows are copied.
    QStringList auditTriggers;
    QSqlQuery triggers(db);
    triggers.exec(QStringLiteral("SELECT name, sql FROM sqlite_master WHERE type = 'trigger' AND name LIKE 'Audit%Insert'"));
    while (triggers.next()) {
        auditTriggers << triggers.value(1).toString();
        if (!Schema::Exec(db, QStringLiteral("DROP TRIGGER %1").arg(SqlText::id(triggers.value(0).toString())), error))
            return false;
    }
    QSqlQuery references(db);
    for (const QString &table : Tables()) {
        references.prepare(QStringLiteral("SELECT \"table\" FROM pragma_foreign_key_list(?)"));
        references.addBindValue(table);
        references.exec();
        while (references.next())
            m_keys.insert(references.value(0).toString(), {});
    }
    for (int i = 0; i < Tables().size(); ++i)
        if (!copyTable(db, i, error))
            return false;
    for (const QString &trigger : std::as_const(auditTriggers))
        if (!Schema::Exec(db, trigger, error))
            return false;
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("PRAGMA foreign_key_check")) || q.next()) {
        *error = tr("The new file's references are not sound (%1); nothing was written.").arg(q.value(0).toString());
        return false;
    }
    if (!q.exec(QStringLiteral("PRAGMA integrity_check")) || !q.next() || q.value(0).toString() != QLatin1String("ok")) {
        *error = tr("The new file failed its integrity check; nothing was written.");
        return false;
    }
    if (!transaction.commit()) {
        *error = transaction.error();
        return false;
    }
    return Schema::Exec(db, QStringLiteral("PRAGMA synchronous = FULL"), error);
}

bool Copier::copyTable(QSqlDatabase db, int index, QString *error)
{
    const QString table = Tables().at(index);
    QString sourceName = table;
    for (const QString &name : m_source.tables())
        if (name.compare(table, Qt::CaseInsensitive) == 0)
            sourceName = name;
    MdbSource::Table shape;
    if (!m_source.describe(sourceName, &shape, error))
        return false;
    const QList<Column> columns = targetColumns(db, table, shape);
    QStringList names;
    QStringList marks;
    for (const Column &c : columns) {
        if (c.source < 0 && c.key) {
            *error
                = tr("The table %1 of the Access file has no column %2; the file is not a database of the old program.").arg(table, c.name);
            return false;
        }
        if (c.source < 0) {
            m_report->notes << tr("The Access file has no column %1.%2; every row gets TendMark's default.").arg(table, c.name);
            continue;
        }
        const Kind kind = shape.columns.at(c.source).kind;
        if (!accepts(c.type, kind)) {
            *error = tr("The column %1.%2 of the Access file holds %3, which TendMark cannot keep there; "
                        "the file is not a database of the old program.")
                         .arg(table, c.name, kindName(kind));
            return false;
        }
        names << SqlText::id(c.name);
        marks << QStringLiteral("?");
    }
    for (const MdbSource::Column &s : shape.columns) {
        const bool copied = std::any_of(columns.cbegin(), columns.cend(),
                                        [&](const Column &c) { return c.name.compare(s.name, Qt::CaseInsensitive) == 0; });
        if (!copied)
            m_report->notes << tr("The column %1.%2 of the Access file is not copied: TendMark has no such column.").arg(table, s.name);
    }
    QSqlQuery insert(db);
    if (!insert.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(SqlText::id(table), names.join(QStringLiteral(", ")), marks.join(QStringLiteral(", "))))) {
        *error = insert.lastError().text();
        return false;
    }
    TableCount count;
    count.table = table;
    Step step {index, int(Tables().size()), table, 0};
    bool cancelled = m_progress && !m_progress(step);
    QVariantList values;
    QString failure;
    m_rowNumber = 0;
    m_sourceTotals.fill(0, columns.size());
    m_keptTotals.fill(0, columns.size());
    m_timesDropped.fill(0, columns.size());
    const auto handle = [&](const QVariantList &row) {
        ++count.read;
        ++m_rowNumber;
        if (convertRow(table, columns, row, &values)) {
            for (int i = 0; i < values.size(); ++i)
                insert.bindValue(i, values.at(i));
            if (!insert.exec()) {
                failure = tr("Row %1 of the table %2 could not be written: %3").arg(m_rowNumber).arg(table, insert.lastError().text());
                return false;
            }
            ++count.written;
        }
        if (count.read % 5000 == 0 && m_progress) {
            step.rows = count.read;
            cancelled = !m_progress(step);
        }
        return !cancelled;
    };
    if (!cancelled && !m_source.read(sourceName, handle, error))
        return false;
    if (!failure.isEmpty()) {
        *error = failure;
        return false;
    }
    if (cancelled) {
        m_report->cancelled = true;
        *error = tr("The conversion was cancelled.");
        return false;
    }
    if (count.read != shape.rows) {
        *error = tr("The Access file lists %1 rows in the table %2, but %3 could be read: the file is damaged.")
                     .arg(shape.rows)
                     .arg(table)
                     .arg(count.read);
        return false;
    }
    if (!verify(db, table, columns, &count, error))
        return false;
    for (int i = 0; i < columns.size(); ++i)
        if (m_timesDropped.at(i) > 0)
            m_report->notes << tr("%1.%2: the time of day was dropped from %3 values; TendMark keeps dates only.")
                                   .arg(table, columns.at(i).name)
                                   .arg(m_timesDropped.at(i));
    m_report->tables << count;
    return true;
}

bool Copier::convertRow(const QString &table, const QList<Column> &columns, const QVariantList &in, QVariantList *out)
{
    out->clear();
    // The row as the report names it: by its key, else by its place in the table.
    const auto row = [&] {
        for (const Column &c : columns)
            if (c.key && c.source >= 0 && !in.at(c.source).isNull())
                return QString::number(in.at(c.source).toLongLong());
        return QStringLiteral("row %1").arg(m_rowNumber);
    };
    for (int i = 0; i < columns.size(); ++i)
        if (columns.at(i).totalled && columns.at(i).source >= 0)
            m_sourceTotals[i] += in.at(columns.at(i).source).toLongLong();
    for (int i = 0; i < columns.size(); ++i) {
        const Column &c = columns.at(i);
        if (c.source < 0)
            continue;
        const QVariant raw = in.at(c.source);
        QVariant value = raw;
        if (!raw.isNull()) {
            switch (c.type) {
            case Target::Text:
            case Target::Memo: {
                QString text = raw.toString();
                if (c.digits) {
                    static const QRegularExpression nonDigits(QStringLiteral("\\D"));
                    text.remove(nonDigits);
                    if (text != raw.toString())
                        change(table, row(), tr("%1 '%2' kept as digits only, '%3'.").arg(c.name, raw.toString(), text));
                }
                if (c.type == Target::Text && text.size() > c.length) {
                    const QString cut = CutText(text, c.length);
                    change(table, row(), tr("%1 '%2' is longer than %3 characters: cut to '%4'.").arg(c.name, text).arg(c.length).arg(cut));
                    text = cut;
                }
                value = (c.digits && text.isEmpty()) ? QVariant() : QVariant(text);
                break;
            }
            case Target::Date: {
                bool hadTime = false;
                const std::optional<QDate> date = DateFromDays(raw.toDouble(), &hadTime);
                if (hadTime)
                    ++m_timesDropped[i];
                if (!date)
                    change(table, row(), tr("%1 holds 12/30/1899, Access's \"no date\": left empty.").arg(c.name));
                value = date ? QVariant(date->toString(Qt::ISODate)) : QVariant();
                break;
            }
            case Target::Money: {
                bool rounded = false;
                const qint64 cents = CentsFromMoney(raw.toLongLong(), &rounded);
                if (rounded)
                    change(
                        table, row(),
                        tr("%1 %2 has a fraction of a cent: rounded to %3.").arg(c.name, MoneyText(raw.toLongLong()), Money::plain(cents)));
                value = cents;
                break;
            }
            case Target::YesNo:
                value = raw.toBool() ? 1 : 0;
                break;
            case Target::Integer:
                break;
            case Target::Double:
                value = raw.toDouble();
                break;
            }
        }
        if (!c.references.isEmpty() && !value.isNull() && !m_keys.constFind(c.references)->contains(value.toLongLong())) {
            if (c.notNull) {
                change(table, row(), tr("left out: its %1 %2 is not in the table %3.").arg(c.name, value.toString(), c.references));
                return false;
            }
            change(table, row(), tr("%1 %2 is not in the table %3: left empty.").arg(c.name, value.toString(), c.references));
            value = QVariant();
        }
        if (c.notNull && value.isNull()) {
            if (!c.references.isEmpty()) {
                change(table, row(), tr("left out: it has no %1.").arg(c.name));
                return false;
            }
            value = (c.type == Target::Text || c.type == Target::Memo) ? QVariant(QStringLiteral("")) : QVariant(0);
            change(table, row(),
                   tr("%1 is empty, which TendMark does not allow: %2 kept.")
                       .arg(c.name, value.typeId() == QMetaType::QString ? tr("an empty text") : tr("0")));
        }
        *out << value;
    }
    for (int i = 0, bound = 0; i < columns.size(); ++i) {
        const Column &c = columns.at(i);
        if (c.source < 0)
            continue;
        const QVariant &value = out->at(bound++);
        if (c.totalled && !value.isNull())
            m_keptTotals[i] += value.toLongLong();
        if (c.key && !value.isNull() && m_keys.contains(table))
            m_keys[table].insert(value.toLongLong());
    }
    return true;
}

bool Copier::verify(QSqlDatabase db, const QString &table, const QList<Column> &columns, TableCount *count, QString *error)
{
    QStringList sums {QStringLiteral("COUNT(*)")};
    QList<int> totalled;
    for (int i = 0; i < columns.size(); ++i) {
        if (columns.at(i).totalled && columns.at(i).source >= 0) {
            sums << QStringLiteral("SUM(%1)").arg(SqlText::id(columns.at(i).name));
            totalled << i;
        }
    }
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT %1 FROM %2").arg(sums.join(QStringLiteral(", ")), SqlText::id(table))) || !q.next()) {
        *error = q.lastError().text();
        return false;
    }
    if (q.value(0).toLongLong() != count->written) {
        *error = tr("The table %1 holds %2 rows after the copy instead of %3.").arg(table).arg(q.value(0).toLongLong()).arg(count->written);
        return false;
    }
    for (int i = 0; i < totalled.size(); ++i) {
        const Column &c = columns.at(totalled.at(i));
        const qint64 written = q.value(i + 1).toLongLong();
        const qint64 source = m_sourceTotals.at(totalled.at(i));
        const bool money = c.type == Target::Money;
        if (written != m_keptTotals.at(totalled.at(i))) {
            *error = tr("The total of %1.%2 after the copy does not equal the rows written.").arg(table, c.name);
            return false;
        }
        QString line = c.name + QLatin1Char(' ') + (money ? Money::plain(written) : QString::number(written));
        if ((money ? written * 100 : written) != source)
            line += tr(" (Access file: %1)").arg(money ? MoneyText(source) : QString::number(source));
        count->totals << line;
    }
    return true;
}

}   // namespace

Report Convert(MdbSource::Reader &source, const QString &sourceName, const QString &target, bool overwrite, const Progress &progress)
{
    Report report;
    QStringList missing;
    for (const QString &table : Tables())
        if (!source.tables().contains(table, Qt::CaseInsensitive))
            missing << table;
    if (!missing.isEmpty()) {
        report.error = tr("The file '%1' is not a database of the old program: it has no table %2.")
                           .arg(QDir::toNativeSeparators(sourceName), missing.join(QStringLiteral(", ")));
        return report;
    }
    for (const QString &table : source.tables())
        if (!Tables().contains(table, Qt::CaseInsensitive))
            report.notes << tr("The table %1 of the Access file is not copied: TendMark has no such table.").arg(table);
    const auto fill = [&](QSqlDatabase db, QString *error) { return Copier(source, progress, &report).run(db, error); };
    QString error;
    report.ok = Schema::CreateDatabase(target, overwrite, &error, fill);
    if (!report.ok) {
        report.error = error;
        report.tables.clear();
        report.changes.clear();
    }
    return report;
}

Report ConvertFile(const QString &source, const QString &target, bool overwrite, const Progress &progress)
{
    Report report;
    const QFileInfo in(source);
    const QFileInfo out(target);
    const QFileInfo folder(out.absolutePath());
    if (in.exists() && out.exists() && in.canonicalFilePath() == out.canonicalFilePath())
        report.error = tr("The new TendMark file must not take the place of the Access file '%1'.").arg(QDir::toNativeSeparators(source));
    else if (out.exists() && !overwrite)
        report.error = tr("The file '%1' already exists.").arg(QDir::toNativeSeparators(target));
    else if (QTemporaryFile probe(folder.filePath() + QStringLiteral("/.tendmark-probe-XXXXXX")); !folder.isDir() || !probe.open())
        report.error = tr("The folder '%1' cannot be written to; choose another place for the new file.")
                           .arg(QDir::toNativeSeparators(folder.filePath()));
    if (!report.error.isEmpty())
        return report;
    const std::unique_ptr<AccessFile> file = AccessFile::Open(source, &report.error);
    if (!file)
        return report;
    return Convert(*file, source, target, overwrite, progress);
}

}   // namespace MdbConvert
