#include "basClient.h"

#include "Prompt.h"
#include "Recordset.h"
#include "basDatabase.h"
#include "frmClientDetails.h"

#include <QCoreApplication>
#include <QHash>
#include <QTableView>

namespace basClient {

QString DeleteName(const QString &last, const QString &first, const QString &middle, bool emptyWithoutLastName)
{
    if (last.isEmpty())
        return emptyWithoutLastName ? QString() : QLatin1Char(' ') + middle;
    return last + QStringLiteral(", ") + first + QLatin1Char(' ') + middle;
}

bool ConfirmDelete(const QString &name)
{
    return Prompt::message(
               QCoreApplication::translate("basClient", "Delete Client?"),
               QCoreApplication::translate(
                   "basClient",
                   "This will delete client '%1' and all supporting data from the database. \r\nAre you sure you want to do this?")
                   .arg(name),
               Prompt::Icon::Exclamation, Prompt::Yes | Prompt::No)
        == Prompt::Yes;
}

void TellNoClientRecordsFound()
{
    Prompt::message(QCoreApplication::translate("basClient", "No Client Records Found"),
                    QCoreApplication::translate("basClient", "No client records were found that matched the specified criteria."),
                    Prompt::Icon::Exclamation, Prompt::Ok);
}

void FitColumns(QTableView *grid)
{
    static const QHash<QString, QString> widest = {
        {QStringLiteral("SSN"), QStringLiteral("000-00-0000")},
        {QStringLiteral("DLN"), QStringLiteral("WW00000000")},
        {QStringLiteral("Birth Date"), QStringLiteral("00/00/0000")},
        {QStringLiteral("Date"), QStringLiteral("00/00/0000")},
        {QStringLiteral("Home Phone"), QStringLiteral("(000) 000-0000")},
        {QStringLiteral("Work Phone"), QStringLiteral("(000) 000-0000")},
        {QStringLiteral("Mobile Phone"), QStringLiteral("(000) 000-0000")},
        {QStringLiteral("Amt Paid"), QStringLiteral("$0,000.00")},
        {QStringLiteral("Amt Req"), QStringLiteral("$0,000.00")},
        {QStringLiteral("Amount"), QStringLiteral("$0,000.00")},
        {QStringLiteral("ID"), QStringLiteral("000000")},
    };
    const QAbstractItemModel *model = grid->model();
    for (int column = 1; column < model->columnCount(); ++column) {
        const QString heading = model->headerData(column, Qt::Horizontal).toString();
        const QString sample = widest.value(heading, heading);
        const int needed = qMax(grid->fontMetrics().horizontalAdvance(sample), grid->fontMetrics().horizontalAdvance(heading)) + 16;
        if (grid->columnWidth(column) < needed)
            grid->setColumnWidth(column, needed);
    }
}

frmClientDetails *OpenDetails(Workspace *main, const QString &clientId)
{
    frmClientDetails *details = main->findChildWindow<frmClientDetails>();
    if (!details) {
        details = new frmClientDetails(main, clientId);
        main->addChild(details);
        main->activateChild(details);
        return details;
    }
    main->activateChild(details);
    details->showRecord(clientId);
    return details;
}

bool DeleteClient(Recordset &recordset, const QString &clientId, const QString &name)
{
    if (!ConfirmDelete(name) || !basDatabase::DeleteItemFromTable(QStringLiteral("Client"), QStringLiteral("ClientID"), clientId))
        return false;
    Prompt::message(QCoreApplication::translate("basClient", "Delete Client"),
                    QCoreApplication::translate("basClient", "Client '%1' deleted.").arg(name), Prompt::Icon::None, Prompt::Ok);
    recordset.resync();
    return true;
}

}   // namespace basClient
