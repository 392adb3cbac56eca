#pragma once

#include <QDate>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

// Every insert, update and delete of the pantry's records leaves a row in the
// AuditLog table, written by triggers in the same transaction as the change:
// when, which operating-system user, which table and key, and the changed
// columns' old and new values (JSON objects). Triggers refuse any change to the
// log itself.
namespace AuditLog {

// The tables whose changes are recorded.
QStringList AuditedTables();

// Makes the SQL function tendmark_os_user() known to every SQLite connection the
// process opens from now on; the triggers call it. Safe to call many times.
void RegisterUserFunction();
// The user name the log records.
QString OperatingSystemUser();

// Creates the AuditLog table and its triggers in an open database.
bool Install(QSqlDatabase db, QString *error);
// Empties the log of a file still being made, whose rows record only its making.
bool StartAfresh(QSqlDatabase db, QString *error);

struct Entry
{
    qlonglong id = 0;
    QString time;
    QString user;
    QString table;
    qlonglong key = 0;
    QString operation;   // insert, update or delete
    QString oldValues;
    QString newValues;
};

struct Filter
{
    qlonglong clientId = 0;   // 0: every client
    QDate since;   // invalid: from the start
    QDate until;   // invalid: to the end; else up to and including that day
    QString table;   // empty: every table
    QString user;   // empty: every user
};

// The entries matching the filter, oldest first. Returns false with *error set.
bool Read(QSqlDatabase db, const Filter &filter, QList<Entry> *entries, QString *error);
// One line of text: time, user, operation, table and key, then the values.
QString Describe(const Entry &entry);

}   // namespace AuditLog
