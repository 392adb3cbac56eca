#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>

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

} // namespace basClient

class Recordset;

// Page Up / Page Down (with Ctrl: first / last) and Escape for a record window,
// seen before the control that has the focus gets them.
class NavigationKeys : public QObject
{
    Q_OBJECT

public:
    enum class Move { First, Previous, Next, Last };

    NavigationKeys(QWidget *window, std::function<void(Move)> move);
    // Watches the window and every control it holds now.
    void watchChildren();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QWidget> m_window;
    std::function<void(Move)> m_move;
};

namespace basClient {
// Asks, deletes the client with every row that belongs to it, says so and re-reads
// the recordset, which then stands on the first client. False on No or a failed delete.
bool DeleteClient(Recordset &recordset, const QString &clientId, const QString &name);
// Moves the client recordset; Next past the last and Previous before the first beep and stay.
void MoveRecordset(Recordset &recordset, NavigationKeys::Move move);
} // namespace basClient
