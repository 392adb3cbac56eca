#pragma once

#include <QDate>
#include <QSqlDatabase>
#include <QString>

// Realistic, repeatable sample households for demonstrations and load tests.
namespace DemoData {

struct Options
{
    int clients = 500;
    quint32 seed = 1;
    QDate today = QDate::currentDate();   // no visit or payment is dated after this
    int volunteers = -1;   // -1: about clients/50, at least 5
    // Totals over all households, spread evenly with some variation; -1 leaves each
    // household to its own draw (about 1.7 family members, visits and payments now and then).
    qint64 familyMembers = -1;
    qint64 foodServices = -1;
    int years = 2;   // visits and payments are dated over this many years before today
    qint64 payments = -1;
};

// Fills an open database that already holds the standard contents (lookup
// tables, States, Gender). Runs in one transaction; on failure rolls back,
// sets *error and returns false. The same seed and today give the same data.
bool Generate(QSqlDatabase db, const Options &options, QString *error);

}   // namespace DemoData
