#include "SearchQueries.h"

#include "FoldedText.h"
#include "SearchIndex.h"
#include "SqlText.h"
#include "basDatabase.h"
#include "basTendmark.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QStringList>

namespace SearchQueries {
namespace {

const QString kLike = QStringLiteral(" LIKE ? ESCAPE '\\'");

enum class Match { Contains, StartsWith, Date };

QString pattern(Match match, const QString &text)
{
    return match == Match::StartsWith ? SqlText::likeStartsWith(text) : SqlText::likeContains(text);
}

// Names and addresses are compared folded (see FoldedText): on their key column when the
// table keeps one, otherwise folded as they are read.
enum class Fold { None, Name, Address };

QString foldedColumn(const QString &table, const QString &column, Fold fold)
{
    if (fold == Fold::None)
        return column;
    const QString key = column + QStringLiteral("Key");
    if (FoldedText::keyColumns(table).contains(key))
        return key;
    return (fold == Fold::Address ? QStringLiteral("tendmark_fold_address(") : QStringLiteral("tendmark_fold(")) + column
        + QLatin1Char(')');
}

QString folded(Fold fold, const QString &text)
{
    return fold == Fold::Address ? FoldedText::address(text) : fold == Fold::Name ? FoldedText::name(text) : text;
}

QString withoutDashes(QString text)
{
    return text.remove(QLatin1Char('-'));
}

QString countQuery(const QString &key, const QString &table, const QString &condition)
{
    return QStringLiteral("SELECT %1 AS RowKey FROM %2 WHERE %3").arg(key, table, condition);
}

Query problem(const QString &text)
{
    Query q;
    q.problem = text;
    return q;
}

Query familyQuery(const QString &column, Match match, Fold fold, const QString &text)
{
    const QString extra = column == QLatin1String("LastName") || column == QLatin1String("FirstName")
        ? QString()
        : QStringLiteral("Family.") + column + QStringLiteral(", ");
    const QString typed = folded(fold, text);
    const SearchIndex::Condition indexed = match == Match::Contains
        ? SearchIndex::holding(QStringLiteral("Family"), foldedColumn(QStringLiteral("Family"), column, fold), typed)
        : SearchIndex::Condition {};
    const QString like = QStringLiteral("Family.") + foldedColumn(QStringLiteral("Family"), column, fold) + kLike;
    const QString select = QStringLiteral("SELECT Family.ClientID, Family.LastName, Family.FirstName, Family.MiddleInitial, ") + extra
        + QStringLiteral("Relationships.RelationshipDescription, "
                         "CASE WHEN Client.ClientID IS NULL THEN '' ELSE RTRIM(IFNULL(Client.LastName,'') || ', ' || "
                         "IFNULL(Client.FirstName,'') || ' ' || IFNULL(Client.MiddleInitial,'')) END AS ClientName "
                         "FROM Family LEFT JOIN Relationships ON Family.RelationshipID = Relationships.RelationshipID "
                         "LEFT JOIN Client ON Family.ClientID = Client.ClientID WHERE ");
    const QString order = QStringLiteral(" ORDER BY Family.LastNameKey, Family.FirstNameKey, Family.FamilyMemberID");
    const QString keySql = QStringLiteral("SELECT ClientID FROM Family WHERE FamilyMemberID = ?");
    if (!indexed.sql.isEmpty())
        return {{select + indexed.sql + order, {indexed.bind}, indexed.keys}, keySql, {}, select + indexed.alongOrder + order};
    // Counted on the name, number and licence indexes, which hold the member's id but not the household's.
    return {{select + like + order, {pattern(match, typed)}, countQuery(QStringLiteral("FamilyMemberID"), QStringLiteral("Family"), like)},
            keySql,
            {},
            {}};
}

}   // namespace

namespace {

const char *const kClientFields[] = {
    QT_TRANSLATE_NOOP("SearchQueries", "Last Name"),
    QT_TRANSLATE_NOOP("SearchQueries", "First Name"),
    QT_TRANSLATE_NOOP("SearchQueries", "Social Security Number"),
    QT_TRANSLATE_NOOP("SearchQueries", "Driver's License Number"),
    QT_TRANSLATE_NOOP("SearchQueries", "Address"),
    QT_TRANSLATE_NOOP("SearchQueries", "Birth Date"),
    QT_TRANSLATE_NOOP("SearchQueries", "Home Phone"),
    QT_TRANSLATE_NOOP("SearchQueries", "Mobile Phone"),
    QT_TRANSLATE_NOOP("SearchQueries", "Work Phone"),
    QT_TRANSLATE_NOOP("SearchQueries", "Employer Name"),
    QT_TRANSLATE_NOOP("SearchQueries", "Employer Address"),
    QT_TRANSLATE_NOOP("SearchQueries", "Family Member Last Name"),
    QT_TRANSLATE_NOOP("SearchQueries", "Family Member First Name"),
    QT_TRANSLATE_NOOP("SearchQueries", "Family Member Social Security Number"),
    QT_TRANSLATE_NOOP("SearchQueries", "Family Member Driver's License Number"),
};

const char *const kVolunteerFields[] = {
    QT_TRANSLATE_NOOP("SearchQueries", "Last Name"),
    QT_TRANSLATE_NOOP("SearchQueries", "First Name"),
    QT_TRANSLATE_NOOP("SearchQueries", "Address"),
    QT_TRANSLATE_NOOP("SearchQueries", "Home Phone"),
    QT_TRANSLATE_NOOP("SearchQueries", "Mobile Phone"),
    QT_TRANSLATE_NOOP("SearchQueries", "Work Phone"),
    QT_TRANSLATE_NOOP("SearchQueries", "E-Mail Address"),
    QT_TRANSLATE_NOOP("SearchQueries", "Emergency Contact"),
    QT_TRANSLATE_NOOP("SearchQueries", "Emergency Contact Phone"),
    QT_TRANSLATE_NOOP("SearchQueries", "Affiliation"),
    QT_TRANSLATE_NOOP("SearchQueries", "Comments"),
};

template<size_t N> QStringList names(const char *const (&fields)[N])
{
    QStringList list;
    for (const char *field : fields)
        list << QString::fromUtf8(field);
    return list;
}

}   // namespace

QStringList clientFields()
{
    return names(kClientFields);
}

QStringList volunteerFields()
{
    return names(kVolunteerFields);
}

Query client(const QString &field, const QString &text)
{
    static const QString names = QStringLiteral("SELECT ClientID, LastName, FirstName, MiddleInitial, SocialSecurityNumber, ");
    static const QString order = QStringLiteral(" ORDER BY LastNameKey, FirstNameKey, ClientID");
    struct Entry
    {
        const char *field;
        const char *column;
        Match match;
        Fold fold;
        bool phone;
        bool ssn;
    };
    static const Entry entries[] = {
        {"Last Name", "LastName", Match::Contains, Fold::Name, false, false},
        {"First Name", "FirstName", Match::Contains, Fold::Name, false, false},
        {"Social Security Number", "SocialSecurityNumber", Match::StartsWith, Fold::None, false, true},
        {"Driver's License Number", "DriversLicenseNumber", Match::StartsWith, Fold::None, false, false},
        {"Address", "Address", Match::Contains, Fold::Address, false, false},
        {"Birth Date", "BirthDate", Match::Date, Fold::None, false, false},
        {"Home Phone", "HomePhone", Match::Contains, Fold::None, true, false},
        {"Mobile Phone", "MobilePhone", Match::Contains, Fold::None, true, false},
        {"Work Phone", "WorkPhone", Match::Contains, Fold::None, true, false},
        {"Employer Name", "EmployerName", Match::Contains, Fold::Name, false, false},
        {"Employer Address", "EmployerAddress", Match::Contains, Fold::Address, false, false},
    };
    for (const Entry &e : entries) {
        if (field != QLatin1String(e.field))
            continue;
        const QString column = QString::fromLatin1(e.column);
        // The name searches show the licence number; the others show the searched column.
        const bool nameSearch = column == QLatin1String("LastName") || column == QLatin1String("FirstName")
            || column == QLatin1String("SocialSecurityNumber") || column == QLatin1String("DriversLicenseNumber");
        const QString condition
            = foldedColumn(QStringLiteral("Client"), column, e.fold) + (e.match == Match::Date ? QStringLiteral(" = ?") : kLike);
        const QString sql = names + (nameSearch ? QStringLiteral("DriversLicenseNumber") : column) + QStringLiteral(" FROM Client WHERE ")
            + condition + order;
        const QString count = countQuery(QStringLiteral("ClientID"), QStringLiteral("Client"), condition);
        if (e.match == Match::Date) {
            const QDate date = basTendmark::ParseDate(text);
            if (!date.isValid())
                return problem(
                    QCoreApplication::translate("SearchQueries", "Please type the birth date as mm/dd/yyyy, for example 04/23/1961."));
            return {{sql, {date.toString(Qt::ISODate)}, count}, {}, {}, {}};
        }
        const QString typed = e.phone ? basTendmark::StripPhoneNumber(text) : e.ssn ? withoutDashes(text) : folded(e.fold, text);
        const SearchIndex::Condition indexed = e.match == Match::Contains
            ? SearchIndex::holding(QStringLiteral("Client"), foldedColumn(QStringLiteral("Client"), column, e.fold), typed)
            : SearchIndex::Condition {};
        if (!indexed.sql.isEmpty()) {
            const QString select
                = names + (nameSearch ? QStringLiteral("DriversLicenseNumber") : column) + QStringLiteral(" FROM Client WHERE ");
            return {{select + indexed.sql + order, {indexed.bind}, indexed.keys}, {}, {}, select + indexed.alongOrder + order};
        }
        return {{sql, {pattern(e.match, typed)}, count}, {}, {}, {}};
    }
    if (field == QLatin1String("Family Member Last Name"))
        return familyQuery(QStringLiteral("LastName"), Match::Contains, Fold::Name, text);
    if (field == QLatin1String("Family Member First Name"))
        return familyQuery(QStringLiteral("FirstName"), Match::Contains, Fold::Name, text);
    if (field == QLatin1String("Family Member Social Security Number"))
        return familyQuery(QStringLiteral("SocialSecurityNumber"), Match::StartsWith, Fold::None, withoutDashes(text));
    if (field == QLatin1String("Family Member Driver's License Number"))
        return familyQuery(QStringLiteral("DriversLicenseNumber"), Match::StartsWith, Fold::None, text);
    return problem(QCoreApplication::translate("SearchQueries", "Choose a field to search on."));
}

Query volunteer(const QString &field, const QString &text)
{
    static const QString names = QStringLiteral("SELECT VolunteerID, LastName, FirstName, MiddleInitial");
    struct Entry
    {
        const char *field;
        const char *column;
        const char *shown;
        Fold fold;
        bool phone;
    };
    static const Entry entries[] = {
        {"Last Name", "LastName", "", Fold::Name, false},
        {"First Name", "FirstName", "", Fold::Name, false},
        {"Address", "Address", "Address", Fold::Address, false},
        {"Home Phone", "HomePhone", "HomePhone", Fold::None, true},
        {"Mobile Phone", "MobilePhone", "MobilePhone", Fold::None, true},
        {"Work Phone", "WorkPhone", "WorkPhone", Fold::None, true},
        {"E-Mail Address", "EMailAddress", "EMailAddress", Fold::Name, false},
        {"Emergency Contact", "EmergencyContact", "EmergencyContact", Fold::Name, false},
        {"Emergency Contact Phone", "EmergencyContactPhone", "EmergencyContact, EmergencyContactPhone", Fold::None, true},
        {"Affiliation", "Affiliation", "Affiliation", Fold::Name, false},
        {"Comments", "Comments", "Comments", Fold::Name, false},
    };
    for (const Entry &e : entries) {
        if (field != QLatin1String(e.field))
            continue;
        const QString shown = QString::fromLatin1(e.shown);
        const QString condition = foldedColumn(QStringLiteral("Volunteer"), QString::fromLatin1(e.column), e.fold) + kLike;
        const QString sql = names + (shown.isEmpty() ? QString() : QStringLiteral(", ") + shown) + QStringLiteral(" FROM Volunteer WHERE ")
            + condition + QStringLiteral(" ORDER BY LastNameKey, FirstNameKey, VolunteerID");
        return {{sql,
                 {SqlText::likeContains(e.phone ? basTendmark::StripPhoneNumber(text) : folded(e.fold, text))},
                 countQuery(QStringLiteral("VolunteerID"), QStringLiteral("Volunteer"), condition)},
                {},
                {},
                {}};
    }
    return problem(QCoreApplication::translate("SearchQueries", "Choose a field to search on."));
}

Outcome run(const Query &query)
{
    // One pass over the searched table: how many, and the key itself when there is only one.
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT COUNT(*), MIN(RowKey) FROM (%1)").arg(query.countSql), query.binds);
    Outcome outcome;
    if (q.next()) {
        outcome.count = q.value(0).toInt();
        if (outcome.count == 1)
            outcome.onlyKey = q.value(1).toString();
    }
    if (!outcome.onlyKey.isEmpty() && !query.keySql.isEmpty())
        outcome.onlyKey = basDatabase::ScalarValue(query.keySql, {outcome.onlyKey}).toString();
    // Seeking the rows by key and sorting them costs by their number; past some thousands, walking the
    // order's index and keeping the rows that match fills a page sooner.
    constexpr int kMany = 20000;
    outcome.shown = query;
    if (outcome.count > kMany && !query.manySql.isEmpty())
        outcome.shown.sql = query.manySql;
    outcome.shown.rows = outcome.count;
    return outcome;
}

}   // namespace SearchQueries
