#pragma once

#include "Query.h"

#include <QDate>
#include <QString>

// The queries behind the client list, the client and volunteer windows and the
// record editors. A filter hands its own statement in as the base of a list.
namespace RecordQueries {

QString allClients();   // every client, unsorted: the client list's base when no filter applies
// The client and volunteer windows' records, all or those of a filter's statement, in name order:
// last name, then first name, as people read them (case and accents aside), then by key.
QString clientsByName(const QString &filter = {});
QString volunteersByName(const QString &filter = {});

// The client list's rows over a base statement, in name order, with what each of its fields sorts by so
// that it is read by seeking on an index. The count runs over the base alone, so that a long list opens at once.
Query clientList(const QString &base);

// A client's records of one kind for its editor, in the editor's order; bound to the ClientID.
QString familyMembers();
QString foodServices();
QString payments();
QString incomeOrExpenses(bool income);

struct Household
{
    int members = 1;   // the client and the family members
    QDate lastFoodService;   // null when there is none
};
Household household(qint64 clientId);   // throws TmError

// The client's latest food service on or before the date; null when there is none. Throws TmError.
QDate lastFoodService(qint64 clientId, const QDate &onOrBefore);

}   // namespace RecordQueries
