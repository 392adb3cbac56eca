#pragma once

#include "AgeBrackets.h"
#include "Query.h"

#include <QDate>
#include <QList>
#include <QMap>
#include <QString>

// What food banks ask of a pantry for a period: its visits, the households and the
// people in them, by age, and the bags given. A visit is a food service of at least
// one bag. A household is a client; its people are the client and the family members
// on record. "Unduplicated" counts each household or person once in the period,
// "duplicated" once at every visit. Age is in completed years on the visit date (for
// the unduplicated counts, on the household's first visit in the period); a missing
// birth date, or one after the visit, is an unknown age. Each function throws TmError.
namespace AgencyFigures {

struct Figures
{
    qint64 distributionDays = 0;   // dates with at least one visit
    qint64 households = 0;   // unduplicated
    qint64 visits = 0;   // households, duplicated
    qint64 newHouseholds = 0;   // first visit ever in the period
    qint64 individuals = 0;
    qint64 individualVisits = 0;   // individuals, duplicated
    QList<qint64> byAge;   // unduplicated, one per bracket, then the unknown ages
    QList<qint64> byAgeVisits;   // duplicated, the same way
    qint64 withMinors = 0;   // households with a member under 18, on their first visit in the period
    qint64 withoutMinors = 0;
    qint64 bags = 0;
    QMap<QString, qint64> bagsByType;   // by the type's description

    bool operator==(const Figures &) const = default;
};

// Someone counted as of unknown age because they were born after a visit.
struct BornAfterVisit
{
    QString name;
    QString household;   // the client's name; empty when it is the client
    QDate birthDate;
    QDate firstVisit;   // the household's first visit in the period
};

struct Period
{
    Figures total;
    QList<QPair<QDate, Figures>> months;   // by first of month; empty unless asked for
    QList<BornAfterVisit> bornAfterVisit;
};

// The figures from start to end; with byMonth, also those of each calendar month the
// period touches, cut to the period. Unduplicated totals count each household or
// person once in the whole period, so they can be below the sum of the months.
Period compute(const QDate &start, const QDate &end, const QList<AgeBrackets::Bracket> &brackets, bool byMonth);

// The statements whose rows the figures are counted from (what the benchmark hands to the sqlite3 shell).
QList<Query> figuresQueries(const QDate &start, const QDate &end);

}   // namespace AgencyFigures
