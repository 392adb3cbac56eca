#pragma once

#include "LabelLayout.h"
#include "RecordScope.h"

// A run of mailing labels: which clients, in last-name order, and where each of
// their labels lands. The print dialog and tendmark-cli both plan runs here.
namespace Labels {

struct ClientList
{
    bool ok = false;
    QString error;   // why the clients could not be read
    QList<Address> addresses;
};

// reportType as RecordScope (all, the list's current statement, its current client).
// startWith, when not empty, is a client key: the clients before it are skipped.
ClientList loadClients(int reportType, const RecordScope::ActiveScope &scope, const QString &startWith = {});

struct Request
{
    Template sheet;
    int reportType = RecordScope::AllRecords;
    RecordScope::ActiveScope scope;
    QString startWith;   // a client key, or empty to print every chosen client
    int startPosition = 1;
    int copies = 1;
    bool namesOnly = false;
};

struct Plan
{
    bool ok = false;
    QString error;   // for the user: the first thing that stops the run
    QList<LabelPage> pages;
    int clients = 0;
};

// Checks the template, the copies and the start position, reads the clients and
// lays out their labels. Throws TmError when the database fails.
Plan planRun(const Request &request);

}   // namespace Labels
