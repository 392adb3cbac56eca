#include "ReportSummaries.h"

#include "SqlText.h"
#include "basDatabase.h"

namespace ReportSummaries {
namespace {

QString iso(const QDate &date)
{
    return date.toString(Qt::ISODate);
}

// The clients served in the range as the table s, worked out once, then the rest of the
// statement. Semi-joins give the same clients as joining every service to every payment,
// without the product.
Query served(const QDate &start, const QDate &end, bool withEthnicOrigin, const QString &rest, const QVariantList &moreBinds = {})
{
    const QString ethnic = withEthnicOrigin ? QStringLiteral(", e.EthnicOriginDescription AS EthnicGroup") : QString();
    const QString join = withEthnicOrigin ? QStringLiteral(" JOIN EthnicOrigin e ON e.EthnicOriginID = c.EthnicOriginID") : QString();
    Query q;
    q.sql = QStringLiteral("WITH s AS MATERIALIZED (SELECT c.ClientID, c.City, c.ZipCode, c.Gender, c.BirthDate%1 FROM Client c%2 "
                           "WHERE EXISTS (SELECT 1 FROM FoodService f WHERE f.ClientID = c.ClientID) "
                           "AND EXISTS (SELECT 1 FROM Payments p WHERE p.ClientID = c.ClientID) "
                           "AND (EXISTS (SELECT 1 FROM FoodService f WHERE f.ClientID = c.ClientID AND f.FoodServiceDate BETWEEN ? AND ?) "
                           "OR EXISTS (SELECT 1 FROM Payments p WHERE p.ClientID = c.ClientID AND p.PaymentDate BETWEEN ? AND ?))) ")
                .arg(ethnic, join)
        + rest;
    q.binds = QVariantList {iso(start), iso(end), iso(start), iso(end)} + moreBinds;
    return q;
}

// One breakdown's rows: its number, the order key, the item as printed (null: counted, not
// listed) and the count. Typed-in places and groups compare without regard to case.
QString grouped(int breakdown, const QString &column)
{
    return QStringLiteral("SELECT %1, MIN(%2), MIN(%2), COUNT(*) FROM s GROUP BY %2 COLLATE NOCASE").arg(breakdown).arg(column);
}

QString inOrder(const QStringList &breakdowns)
{
    return breakdowns.join(QStringLiteral(" UNION ALL ")) + QStringLiteral(" ORDER BY 1, 2 COLLATE NOCASE");
}

// The calendar-year age of a birth date column, with the year of today bound.
QString age(const QString &column)
{
    return QStringLiteral("(? - CAST(strftime('%Y', %1) AS INTEGER))").arg(column);
}

struct Rows
{
    QList<Item> listed;   // non-null groups in order
    qint64 total = 0;   // every group, the null one included
    bool any = false;
};

// The rows of each breakdown, by number from 1.
QList<Rows> run(const Query &query, int breakdowns)
{
    QList<Rows> rows(breakdowns);
    QSqlQuery q = basDatabase::Execute(query.sql, query.binds);
    while (q.next()) {
        Rows &r = rows[q.value(0).toInt() - 1];
        const qint64 n = q.value(3).toLongLong();
        r.any = true;
        r.total += n;
        if (!q.value(2).isNull())
            r.listed.append({q.value(2).toString(), n});
    }
    return rows;
}

}   // namespace

Query geographicQuery(const QDate &start, const QDate &end)
{
    return served(start, end, false, inOrder({grouped(1, QStringLiteral("City")), grouped(2, QStringLiteral("ZipCode"))}));
}

Query demographicsQuery(const QDate &start, const QDate &end, const QDate &today)
{
    // Any gender but M and F is counted without a group of its own. The digit before ^
    // orders the age groups: Unknown (no birth date, or born this year) comes last.
    return served(start, end, true,
                  inOrder({grouped(1, QStringLiteral("EthnicGroup")),
                           QStringLiteral("SELECT 2, g, g, COUNT(*) FROM (SELECT CASE WHEN Gender IS NULL THEN 'Unknown' "
                                          "WHEN Gender = 'M' COLLATE NOCASE THEN 'Male' WHEN Gender = 'F' COLLATE NOCASE THEN 'Female' "
                                          "END AS g FROM s) GROUP BY g"),
                           QStringLiteral("SELECT 3, k, substr(k, instr(k, '^') + 1), COUNT(*) FROM (SELECT CASE "
                                          "WHEN a IS NULL OR a < 1 THEN '8^Unknown' WHEN a < 5 THEN '1^Birth - 4 Years' "
                                          "WHEN a < 13 THEN '2^5 - 12 Years' WHEN a < 18 THEN '3^13 - 17 Years' "
                                          "WHEN a < 25 THEN '4^18 - 24 Years' WHEN a < 45 THEN '5^25 - 44 Years' "
                                          "WHEN a < 65 THEN '6^45 - 64 Years' ELSE '7^65+ Years' END AS k "
                                          "FROM (SELECT %1 AS a FROM s)) GROUP BY k")
                               .arg(age(QStringLiteral("BirthDate")))}),
                  {today.year()});
}

Query groceryTotalsQuery(const QDate &start, const QDate &end, const QDate &today)
{
    // Services are counted per client first, so that each client's age is worked out once.
    Query q;
    q.sql = QStringLiteral("SELECT SUM(n), COUNT(*), SUM(CASE WHEN a > 18 AND a < 60 THEN n END), SUM(CASE WHEN a > 59 THEN n END), "
                           "SUM(CASE WHEN a < 18 THEN n END), SUM(CASE WHEN a IS NULL THEN n END) "
                           "FROM (SELECT s.n, %1 AS a FROM (SELECT ClientID, COUNT(*) AS n FROM FoodService "
                           "WHERE FoodServiceDate BETWEEN ? AND ? AND NumberOfBags > 0 GROUP BY ClientID) s "
                           "LEFT JOIN Client c ON c.ClientID = s.ClientID)")
                .arg(age(QStringLiteral("c.BirthDate")));
    q.binds = {today.year(), iso(start), iso(end)};
    return q;
}

Query groceryLines(const QDate &start, const QDate &end, const QDate &today)
{
    Query q;
    q.sql = QStringLiteral("SELECT f.FoodServiceDate, %1, %2, f.NumberOfBags FROM FoodService f "
                           "LEFT JOIN Client c ON c.ClientID = f.ClientID "
                           "WHERE f.FoodServiceDate BETWEEN ? AND ? AND f.NumberOfBags > 0 "
                           "ORDER BY f.FoodServiceDate, f.FoodServiceID")
                .arg(SqlText::fullName(QStringLiteral("c")), age(QStringLiteral("c.BirthDate")));
    q.binds = {today.year(), iso(start), iso(end)};
    return q;
}

Summary geographic(const QDate &start, const QDate &end)
{
    const QList<Rows> rows = run(geographicQuery(start, end), 2);
    Summary summary;
    summary.totalClients = rows[0].total;   // clients without a city count here but in no line
    summary.breakdowns.append({QStringLiteral("Breakdown of Clients By City"), QStringLiteral("City"), rows[0].listed});
    if (rows[1].any)
        summary.breakdowns.append({QStringLiteral("Breakdown of Clients By Zip Code"), QStringLiteral("Zip Code"), rows[1].listed});
    return summary;
}

Summary demographics(const QDate &start, const QDate &end, const QDate &today)
{
    const QList<Rows> rows = run(demographicsQuery(start, end, today), 3);
    Summary summary;
    summary.totalClients = rows[1].total;
    summary.breakdowns.append({QStringLiteral("Ethnic Breakdown"), QStringLiteral("Ethnic Group"), rows[0].listed});
    if (rows[1].any)
        summary.breakdowns.append({QStringLiteral("Gender Breakdown"), QStringLiteral("Gender"), rows[1].listed});
    if (rows[2].any)
        summary.breakdowns.append({QStringLiteral("Age Breakdown"), QStringLiteral("Age Group"), rows[2].listed});
    return summary;
}

GroceryTotals groceryTotals(const QDate &start, const QDate &end, const QDate &today)
{
    const Query query = groceryTotalsQuery(start, end, today);
    QSqlQuery q = basDatabase::Execute(query.sql, query.binds);
    GroceryTotals t;
    if (q.next()) {
        t.services = q.value(0).toLongLong();
        t.individualClients = q.value(1).toLongLong();
        t.adults = q.value(2).toLongLong();
        t.seniors = q.value(3).toLongLong();
        t.children = q.value(4).toLongLong();
        t.noBirthDate = q.value(5).toLongLong();
    }
    return t;
}

}   // namespace ReportSummaries
