#include "LabelRun.h"

#include "basDatabase.h"

#include <QCoreApplication>

namespace Labels {

ClientList loadClients(int reportType, const RecordScope::ActiveScope &scope, const QString &startWith)
{
    ClientList result;
    const RecordScope::Selection selection = RecordScope::select(RecordScope::Kind::Client, reportType, scope, QStringLiteral("Client"));
    if (!selection.ok) {
        result.error = selection.error;
        return result;
    }
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT ClientID, LastName, FirstName, MiddleInitial, Address, City, State, ZipCode "
                                                      "FROM Client%1 ORDER BY LastNameKey, FirstNameKey, ClientID")
                                           .arg(selection.where),
                                       selection.binds);
    bool started = startWith.isEmpty();
    while (q.next()) {
        started = started || q.value(0).toString() == startWith;
        if (started)
            result.addresses.append({q.value(1).toString(), q.value(2).toString(), q.value(3).toString(), q.value(4).toString(),
                                     q.value(5).toString(), q.value(6).toString(), q.value(7).toString()});
    }
    if (!started) {
        result.error = QCoreApplication::translate("Labels", "The current client is not among the clients to print.");
        return result;
    }
    result.ok = true;
    return result;
}

Plan planRun(const Request &r)
{
    Plan plan;
    const auto tr = [](const char *text) { return QCoreApplication::translate("Labels", text); };
    if (const Problem p = validate(r.sheet); !p.ok()) {
        plan.error = p.text;
        return plan;
    }
    if (r.copies < 1 || r.copies > MaxCopies) {
        plan.error = tr("Number of copies must be between 1 and %1.").arg(MaxCopies);
        return plan;
    }
    if (r.startPosition < 1 || r.startPosition > r.sheet.perSheet()) {
        plan.error = tr("Starting position must be between 1 and %1, the number of labels on one sheet of '%2'.")
                         .arg(r.sheet.perSheet())
                         .arg(r.sheet.description);
        return plan;
    }
    const ClientList clients = loadClients(r.reportType, r.scope, r.startWith);
    if (!clients.ok) {
        plan.error = clients.error;
        return plan;
    }
    if (clients.addresses.isEmpty()) {
        plan.error = tr("There are no clients to print labels for.");
        return plan;
    }
    QList<QStringList> labels;
    for (const Address &a : clients.addresses)
        labels << labelLines(a, r.namesOnly);
    plan.pages = layoutLabels(r.sheet, labels, r.startPosition, r.copies);
    plan.clients = int(labels.size());
    plan.ok = true;
    return plan;
}

}   // namespace Labels
