#pragma once

// The demo data generator's parts, shared by the files that build one kind of
// row each. Only DemoData's own files include this.
#include "DemoData.h"

#include <QList>
#include <QRandomGenerator>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <initializer_list>

namespace DemoData::detail {

// The number of items of a fixed list.
template<typename T, std::size_t N> constexpr int count(const T (&)[N])
{
    return int(N);
}

inline QString iso(const QDate &date)
{
    return date.toString(Qt::ISODate);
}

struct Lookup
{
    QList<int> ids;
    QStringList descriptions;
    int find(const QString &description) const
    {
        const qsizetype i = descriptions.indexOf(description, 0);
        return i < 0 ? 0 : ids.at(i);
    }
};

struct Person
{
    QString last;
    QString first;
    QChar gender;
    int age = 0;
};

class Generator
{
public:
    Generator(QSqlDatabase db, const Options &options);

    bool run();
    QString error() const { return m_error; }

private:
    // Random helpers. Each draws in a fixed order so that a seed always gives the same data.
    int between(int lo, int hi) { return int(m_rng.bounded(lo, hi + 1)); }
    bool percent(int p) { return int(m_rng.bounded(100)) < p; }
    bool permille(int p) { return int(m_rng.bounded(1000)) < p; }
    const QString &pick(const QStringList &list) { return list.at(m_rng.bounded(int(list.size()))); }
    int pickId(const Lookup &lookup) { return lookup.ids.at(m_rng.bounded(int(lookup.ids.size()))); }
    int idOr(const Lookup &lookup, const char *description)
    {
        const int id = lookup.find(QString::fromLatin1(description));
        return id ? id : pickId(lookup);
    }

    bool fail(const QString &what, const QSqlQuery &query)
    {
        m_error = QStringLiteral("%1: %2").arg(what, query.lastError().text());
        return false;
    }
    bool prepare(QSqlQuery &query, const QString &sql)
    {
        return query.prepare(sql) || fail(QStringLiteral("Could not prepare \"%1\"").arg(sql), query);
    }
    bool exec(QSqlQuery &query, std::initializer_list<QVariant> values, const char *table)
    {
        for (const QVariant &value : values)
            query.addBindValue(value);
        return query.exec() || fail(QStringLiteral("Could not add a row to %1").arg(QLatin1String(table)), query);
    }
    // The items of the lookup table that the given column of a record table refers to.
    bool loadLookup(const char *table, const char *column, Lookup *lookup);

    QString ssn();
    QString phone();
    QString driversLicense();
    QString middleInitial();
    QString street();
    QString birthDate(int age);
    QString memo(const QStringList &lines, int twoLinePercent);
    Person person(const QString &last, QChar gender, int age);
    QString email(const Person &p);
    QDate daysAgo(int days) const { return m_options.today.addDays(-days); }
    qint64 dollars(int lo, int hi) { return qint64(between(lo, hi)) * 100; }
    qint64 dollarsAndCents(int lo, int hi)
    {
        const qint64 whole = dollars(lo, hi);
        return whole + between(0, 99);
    }

    bool insertZips();
    bool updateOrganization();
    bool insertHousehold();
    bool insertFamily(qint64 clientId, const Person &head, bool married, int members);
    bool insertVisits(qint64 clientId, int householdSize, int wanted);
    bool insertPayments(qint64 clientId, int n);
    // This household's part of a total spread over every household, given how much is given already.
    int share(qint64 total, qint64 *given);
    bool insertIncomeAndExpenses(qint64 clientId, bool employed);
    bool insertVolunteer();
    bool dropIndexes();
    bool createIndexes();

    QSqlDatabase m_db;
    Options m_options;
    QRandomGenerator m_rng;
    QString m_error;

    QStringList m_surnames, m_male, m_female, m_streets, m_employers, m_affiliations;
    QStringList m_comments, m_diets, m_medical, m_visitComments, m_volunteerComments;
    QString m_state;
    QStringList m_zips, m_cities;
    QSet<qint32> m_ssns;
    QStringList m_indexes;   // dropped during the run, rebuilt at its end
    int m_household = 0;   // the household being added, from 0
    qint64 m_familyGiven = 0, m_servicesGiven = 0, m_paymentsGiven = 0;

    Lookup m_marital, m_ethnic, m_education, m_housing, m_religion, m_assistance;
    Lookup m_relationships, m_serviceTypes, m_paymentTypes, m_incomeSources, m_expenseCategories;

    QSqlQuery m_client {m_db}, m_family {m_db}, m_visit {m_db}, m_payment {m_db};
    QSqlQuery m_income {m_db}, m_expense {m_db}, m_volunteer {m_db};
};

}   // namespace DemoData::detail
