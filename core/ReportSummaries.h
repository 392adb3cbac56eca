#pragma once

#include "Query.h"

#include <QDate>
#include <QList>
#include <QString>

// The figures of the statistical reports for a date range: clients served by
// place, ethnic group, gender and age group, and the grocery log's totals.
// A client is served in the range when it has a food service record and a
// payment record, and either a service or a payment falls in the range. Ages
// are differences of calendar years to `today`. Each function throws TmError.
namespace ReportSummaries {

struct Item
{
    QString description;   // as printed
    qint64 clients = 0;
};

struct Breakdown
{
    QString heading;   // "Ethnic Breakdown", "Breakdown of Clients By City"
    QString itemHeading;   // the item column's heading: "City", "Gender"
    QList<Item> items;
};

struct Summary
{
    qint64 totalClients = 0;   // can exceed the sum of a breakdown's items
    QList<Breakdown> breakdowns;
};

struct GroceryTotals
{
    qint64 services = 0;   // services with bags, one each
    qint64 individualClients = 0;
    qint64 adults = 0;   // aged 19 to 59: a client aged exactly 18 is in no class
    qint64 seniors = 0;   // 60 and over
    qint64 children = 0;   // under 18
    qint64 noBirthDate = 0;
};

// By city (always) and by zip code (when anyone was served).
Summary geographic(const QDate &start, const QDate &end);
// By ethnic group (always), gender and age group (when anyone was served). Clients
// without an ethnic origin are left out of every breakdown and of the total.
Summary demographics(const QDate &start, const QDate &end, const QDate &today);
GroceryTotals groceryTotals(const QDate &start, const QDate &end, const QDate &today);

// The statements behind those figures: what the benchmark also hands to the sqlite3
// shell. The two summaries give rows of breakdown number (from 1), order key, item as
// printed (null: counted in the breakdown's total but not listed) and count; the
// grocery totals one row.
Query geographicQuery(const QDate &start, const QDate &end);
Query demographicsQuery(const QDate &start, const QDate &end, const QDate &today);
Query groceryTotalsQuery(const QDate &start, const QDate &end, const QDate &today);
// The grocery log's lines in date order: date, client name, calendar age (null
// without a birth date), bags. Only services with bags.
Query groceryLines(const QDate &start, const QDate &end, const QDate &today);

}   // namespace ReportSummaries
