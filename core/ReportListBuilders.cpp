#include "ReportBuilders.h"

#include "LookupTables.h"
#include "Money.h"
#include "SqlText.h"
#include "basDatabase.h"
#include "basTendmark.h"

#include <QSqlError>
#include <QSqlRecord>

// The client and volunteer lists, and the client and volunteer detail reports.
namespace Report::detail {
namespace {

const int kBatch = 200;   // rows between two progress reports

qint64 rowCount(const QString &table, const RecordScope::Selection &s)
{
    return basDatabase::ScalarValue(QStringLiteral("SELECT COUNT(*) FROM %1 t%2").arg(table, s.where), s.binds).toLongLong();
}

// "EmployerDurationYears" as "Employer Duration Years", "FEMAContacted" as "FEMA Contacted".
QString caption(const QString &column)
{
    static const QHash<QString, QString> special = {
        {QStringLiteral("EMailAddress"), QStringLiteral("E-Mail Address")},
        {QStringLiteral("DriversLicenseNumber"), QStringLiteral("Driver's License Number")},
    };
    if (special.contains(column))
        return special.value(column);
    QString words;
    for (qsizetype i = 0; i < column.size(); ++i) {
        const QChar c = column.at(i);
        const bool afterLower = i > 0 && column.at(i - 1).isLower();
        const bool acronymEnds = i > 0 && i + 1 < column.size() && column.at(i - 1).isUpper() && column.at(i + 1).isLower();
        if (c.isUpper() && (afterLower || acronymEnds))
            words += QLatin1Char(' ');
        words += c;
    }
    return words;
}

bool isPhone(const QString &column)
{
    return column.endsWith(QLatin1String("Phone")) || column == QLatin1String("Fax");
}

// One record's value as the program shows it.
QString shown(const FieldInfo &field, const QVariant &value)
{
    if (value.isNull())
        return {};
    switch (field.type) {
    case FieldInfo::Type::Boolean:
        return value.toInt() != 0 ? QStringLiteral("Yes") : QStringLiteral("No");
    case FieldInfo::Type::Date:
        return shownDate(value);
    case FieldInfo::Type::Currency:
        return Money::format(value.toLongLong());
    default:
        break;
    }
    if (isPhone(field.name))
        return basTendmark::FormatPhone(value.toString());
    if (field.name == QLatin1String("SocialSecurityNumber"))
        return basTendmark::FormatSSN(value.toString());
    return value.toString();
}

Block familyTable(QSqlQuery &family, qint64 clientId, const QDate &today)
{
    Block table;
    table.kind = Block::Table;
    table.columns = {{QStringLiteral("Name"), 4},
                     {QStringLiteral("Relationship"), 3},
                     {QStringLiteral("Social Security No."), 3},
                     {QStringLiteral("Driver's Permit No."), 3},
                     {QStringLiteral("Age"), 1, Qt::AlignRight},
                     {QStringLiteral("Gender"), 2}};
    family.bindValue(0, clientId);
    if (!family.exec())
        return table;
    while (family.next()) {
        table.rows.append({text(family.value(0)), text(family.value(1)), basTendmark::FormatSSN(text(family.value(2))),
                           text(family.value(3)), text(calendarAge(family.value(4), today)), text(family.value(5))});
    }
    return table;
}

// One heading and one block of every field per record; clients also list their family.
bool detailReport(Context &context, RecordScope::Kind kind)
{
    const QString table = RecordScope::tableName(kind);
    const QString key = RecordScope::keyColumn(kind);
    RecordScope::Selection s;
    if (!scopeSelection(context, kind, QStringLiteral("t"), &s))
        return false;

    // Lookup references print their item's description in place of its number.
    const QList<FieldInfo> fields = basDatabase::Fields(table);
    QString lookups;
    QHash<QString, QString> lookupCaption;
    for (const FieldInfo &f : fields) {
        const LookupTables::LookupTable *l = LookupTables::referencedBy(table, f.name);
        if (!l)
            continue;
        const QString description = QString::fromLatin1(l->descriptionColumn);
        lookups += QStringLiteral(", (SELECT %1 FROM %2 WHERE %3 = t.%4) AS %4_Description")
                       .arg(description, l->name(), QString::fromLatin1(l->keyColumn), f.name);
        lookupCaption.insert(f.name, caption(description.chopped(int(qstrlen("Description")))));
    }
    const qint64 total = rowCount(table, s);
    QSqlQuery q
        = basDatabase::Execute(QStringLiteral("SELECT t.*, %1 AS ReportFullName%2 FROM %3 t%4 ORDER BY t.LastNameKey, t.FirstNameKey, t.%5")
                                   .arg(SqlText::fullName(QStringLiteral("t")), lookups, table, s.where, key),
                               s.binds);
    QSqlQuery family(basDatabase::Connection());
    const bool clients = kind == RecordScope::Kind::Client;
    if (clients
        && !family.prepare(QStringLiteral("SELECT %1, r.RelationshipDescription, f.SocialSecurityNumber, f.DriversLicenseNumber, "
                                          "f.BirthDate, f.Gender FROM Family f "
                                          "LEFT JOIN Relationships r ON r.RelationshipID = f.RelationshipID "
                                          "WHERE f.ClientID = ? ORDER BY f.FamilyMemberID")
                               .arg(SqlText::fullName(QStringLiteral("f")))))
        return context.fail(family.lastError().text());

    Document &d = context.document;
    QStringList header;
    for (const FieldInfo &f : fields)
        header << (lookupCaption.contains(f.name) ? lookupCaption.value(f.name) : caption(f.name));
    d.csvRows.append(header);
    qint64 done = 0;
    while (q.next()) {
        const QSqlRecord record = q.record();
        if (done > 0) {
            Block pageBreak;
            pageBreak.kind = Block::PageBreak;
            d.blocks.append(pageBreak);
        }
        Block heading;
        heading.kind = Block::Heading;
        heading.level = 1;
        heading.keepWithNext = true;
        heading.lines = {text(q.value(QStringLiteral("ReportFullName")))};
        d.blocks.append(heading);

        Block values;
        values.kind = Block::Fields;
        QStringList csv;
        for (qsizetype i = 0; i < fields.size(); ++i) {
            const FieldInfo &f = fields.at(i);
            const QString value = lookupCaption.contains(f.name) ? text(record.value(f.name + QStringLiteral("_Description")))
                                                                 : shown(f, record.value(f.name));
            values.fields.append({header.at(i), value});
            csv << value;
        }
        d.blocks.append(values);
        if (clients) {
            Block members = familyTable(family, q.value(key).toLongLong(), context.today);
            if (!members.rows.isEmpty())
                d.blocks.append(members);
        }
        d.csvRows.append(csv);
        if (++done % kBatch == 0 && !context.step(done, total))
            return false;
    }
    return context.step(done, total);
}

}   // namespace

bool personList(Context &context)
{
    const Parameters &p = context.parameters;
    const bool volunteers = p.name == Name::VolunteerList;
    const RecordScope::Kind kind = volunteers ? RecordScope::Kind::Volunteer : RecordScope::Kind::Client;
    const QString table = RecordScope::tableName(kind);
    RecordScope::Selection s;
    if (!scopeSelection(context, kind, QStringLiteral("t"), &s))
        return false;

    // Any grouping other than by city is by zip code.
    const QString groupColumn = p.groupBy == 0 ? QString() : p.groupBy == 1 ? QStringLiteral("City") : QStringLiteral("ZipCode");
    const QString groupLabel = p.groupBy == 1 ? QStringLiteral("City") : QStringLiteral("Zip Code");
    const QString phones = volunteers ? QStringLiteral("t.HomePhone, t.WorkPhone") : QStringLiteral("t.SocialSecurityNumber, t.HomePhone");
    const QString order = groupColumn.isEmpty() ? QString() : QStringLiteral("t.%1 COLLATE NOCASE, ").arg(groupColumn);
    const qint64 total = rowCount(table, s);
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT %1, %2, %3, %4 FROM %5 t%6 ORDER BY %7t.LastNameKey, t.FirstNameKey, t.%8")
                                           .arg(SqlText::fullName(QStringLiteral("t")), SqlText::fullAddress(QStringLiteral("t")), phones,
                                                groupColumn.isEmpty() ? QStringLiteral("NULL") : QStringLiteral("t.") + groupColumn, table,
                                                s.where, order, RecordScope::keyColumn(kind)),
                                       s.binds);

    Block tableBlock;
    tableBlock.kind = Block::Table;
    tableBlock.columns = {{QStringLiteral("Name"), 4}, {QStringLiteral("Address"), 6}};
    if (volunteers)
        tableBlock.columns << Column {QStringLiteral("Home Phone"), 2} << Column {QStringLiteral("Work Phone"), 2};
    else
        tableBlock.columns << Column {QStringLiteral("Social Security No."), 3} << Column {QStringLiteral("Home Phone"), 2};
    QStringList csvHeader;
    if (!groupColumn.isEmpty())
        csvHeader << groupLabel;
    for (const Column &c : std::as_const(tableBlock.columns))
        csvHeader << c.heading;

    Document &d = context.document;
    d.csvRows.append(csvHeader);
    Block current = tableBlock;
    QString group;
    qint64 done = 0;
    auto flush = [&] {
        if (!current.rows.isEmpty())
            d.blocks.append(current);
        current.rows.clear();
    };
    while (q.next()) {
        const QString value = text(q.value(4));
        if (!groupColumn.isEmpty() && (done == 0 || value.compare(group, Qt::CaseInsensitive) != 0)) {
            flush();
            group = value;
            Block heading;
            heading.kind = Block::Heading;
            heading.keepWithNext = true;
            heading.lines = {groupLabel + QStringLiteral(": ") + value};
            d.blocks.append(heading);
        }
        const QString second = volunteers ? basTendmark::FormatPhone(text(q.value(2))) : basTendmark::FormatSSN(text(q.value(2)));
        const QStringList row = {text(q.value(0)), text(q.value(1)), second, basTendmark::FormatPhone(text(q.value(3)))};
        current.rows.append(row);
        d.csvRows.append(groupColumn.isEmpty() ? row : QStringList {value} + row);
        if (++done % kBatch == 0 && !context.step(done, total))
            return false;
    }
    flush();
    return context.step(done, total);
}

bool clientDetail(Context &context)
{
    return detailReport(context, RecordScope::Kind::Client);
}

bool volunteerDetail(Context &context)
{
    return detailReport(context, RecordScope::Kind::Volunteer);
}

}   // namespace Report::detail
