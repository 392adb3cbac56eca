#pragma once

#include "TestDatabase.h"

#include <QDate>
#include <QVariantMap>

// A small pantry built for the report tests: seven clients whose records sit on
// the edges of the report rules, seen from 15 January 2027 over December 2026.
namespace ReportFixture {

inline const QDate kToday(2027, 1, 15);
inline const QDate kStart(2026, 12, 1);
inline const QDate kEnd(2026, 12, 31);

struct Ids
{
    qint64 obrien, zhang, adams, brown, clark, davis, evans;
};

inline qint64 client(const QVariantMap &values)
{
    return TestDatabase::insert(QStringLiteral("Client"), values);
}

inline void service(qint64 client, const char *date, int bags)
{
    TestDatabase::insert(QStringLiteral("FoodService"),
                         {{"ClientID", client},
                          {"FoodServiceDate", date},
                          {"NumberOfBags", bags},
                          {"FoodServiceTypeID", TestDatabase::lookupId("FoodServiceTypes", "Regular grocery visit")}});
}

inline void payment(qint64 client, const char *date, qint64 paidCents, qint64 requestedCents)
{
    TestDatabase::insert(QStringLiteral("Payments"),
                         {{"ClientID", client},
                          {"PaymentDate", date},
                          {"AmountPaid", paidCents},
                          {"AmountRequested", requestedCents},
                          {"PaymentsTypeID", TestDatabase::lookupId("PaymentTypes", "Rent")}});
}

// A client with the fields the reports group and count by; a null pointer leaves a field empty.
inline qint64 person(const char *last, const char *first, const char *city, const char *zip, const char *gender, const char *birth,
                     const char *ethnic, QVariantMap more = {})
{
    more.insert(QStringLiteral("LastName"), QString::fromUtf8(last));
    more.insert(QStringLiteral("FirstName"), QString::fromUtf8(first));
    const std::pair<const char *, const char *> fields[] = {{"City", city}, {"ZipCode", zip}, {"Gender", gender}, {"BirthDate", birth}};
    for (const auto &[column, value] : fields)
        if (value)
            more.insert(QLatin1String(column), QString::fromUtf8(value));
    if (ethnic)
        more.insert(QStringLiteral("EthnicOriginID"), TestDatabase::lookupId(QStringLiteral("EthnicOrigin"), QString::fromUtf8(ethnic)));
    return client(more);
}

inline Ids seed()
{
    Ids ids;
    // Served in December: a service and a payment in range, aged 57.
    ids.obrien = person("O'Brien", "Seán", "Dayton", "45402", "M", "1970-06-01", "White",
                        {{"State", "OH"},
                         {"Address", "1 Main St"},
                         {"SocialSecurityNumber", "123456789"},
                         {"HomePhone", "9375550100"},
                         {"FEMAContacted", 1}});
    service(ids.obrien, "2026-12-05", 2);
    payment(ids.obrien, "2026-12-06", 5000, 6000);
    TestDatabase::insert("Family",
                         {{"ClientID", ids.obrien},
                          {"LastName", "O'Brien"},
                          {"FirstName", "Niamh"},
                          {"BirthDate", "2026-12-20"},
                          {"Gender", "F"},
                          {"RelationshipID", TestDatabase::lookupId("Relationships", "Daughter")}});
    // Served only through a payment in range (nothing paid); services before the range; born last December.
    ids.zhang = person("Zhang 张", "Wei", "Kettering", "45420", "F", "2026-12-20", "Asian");
    service(ids.zhang, "2026-06-01", 1);
    payment(ids.zhang, "2026-12-10", 0, 1000);
    // No city, a gender neither M nor F, no birth date; payment only before the range.
    ids.adams = person("Adams", "Ann", nullptr, "45402", "X", nullptr, "Hispanic or Latino");
    service(ids.adams, "2026-12-05", 3);
    payment(ids.adams, "2025-01-01", 1500, 1500);
    // Exactly 18, no ethnic origin, the city typed in lower case.
    ids.brown = person("Brown", "Bob \"Bo\"", "dayton", "45403", "M", "2009-03-03", nullptr);
    service(ids.brown, "2026-12-07", 4);
    payment(ids.brown, "2026-12-07", 100, 100);
    // A child with food but no payment record: never in the served set.
    ids.clark = person("Clark", "Cy", "Dayton", "45402", "F", "2015-01-01", "White");
    service(ids.clark, "2026-12-09", 1);
    service(ids.clark, "2026-12-10", 0);
    // A senior without a zip code, with an empty visit and a full one.
    ids.davis = person("Davis", "Di", "Dayton", nullptr, "F", "1950-02-02", "African American");
    service(ids.davis, "2026-12-05", 0);
    service(ids.davis, "2026-12-09", 2);
    payment(ids.davis, "2026-12-15", 2500, 2500);
    // Only visits without bags.
    ids.evans = person("Evans", "Eve", "Dayton", "45402", nullptr, nullptr, nullptr);
    service(ids.evans, "2026-12-08", 0);
    return ids;
}

}   // namespace ReportFixture
