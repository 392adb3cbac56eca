#pragma once

#include <QString>

class QTableView;
class QWidget;
class Workspace;
class frmClientDetails;

// What the three client windows share.
namespace basClient {

// The client's name as the delete question shows it: "Last, First M". The client
// list leaves the name empty without a last name; the record windows keep " M".
QString DeleteName(const QString &last, const QString &first, const QString &middle, bool emptyWithoutLastName);
// Asks "Delete Client?"; true on Yes.
bool ConfirmDelete(const QString &name);
// Says that a client window's query found nobody.
void TellNoClientRecordsFound();
// Widens the columns of dates, numbers and phones so that a whole value shows.
void FitColumns(QTableView *grid);
// Opens the client details window, or brings it forward, on a client or on a new one ("ADD").
frmClientDetails *OpenDetails(Workspace *main, const QString &clientId);

}   // namespace basClient

class Recordset;

namespace basClient {
// Asks, deletes the client with every row that belongs to it, says so and re-reads
// the recordset, which then stands on the client after it (before it, when it was
// the last). False on No or a failed delete.
bool DeleteClient(Recordset &recordset, const QString &clientId, const QString &name);
}   // namespace basClient
