#include "AgeBrackets.h"
#include "Console.h"
#include "CsvWriter.h"
#include "ReportDocument.h"
#include "ReportRenderer.h"
#include "basDatabase.h"

#include <QCommandLineParser>
#include <QDir>

using Console::err;
using Console::out;

namespace {

int usage(const QString &message)
{
    return Console::complain("report", message, 2);
}

int failure(const QString &message)
{
    return Console::complain("report", message, 1);
}

// A date as YYYY-MM-DD, and nothing else.
bool parseDate(const QCommandLineParser &p, const QString &option, QDate *date)
{
    if (!p.isSet(option))
        return true;
    *date = QDate::fromString(p.value(option), QStringLiteral("yyyy-MM-dd"));
    return date->isValid();
}

QString names()
{
    QStringList list;
    for (const Report::CatalogueEntry &e : Report::catalogue())
        list << QString::fromLatin1(e.cliName);
    return list.join(QStringLiteral(", "));
}

}   // namespace

int commandReport(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("Writes one of the reports of a TendMark database to PDF or CSV, without windows.\n"
                                               "NAME is one of: %1.")
                                    .arg(names()));
    const QCommandLineOption help = p.addHelpOption();
    const QString from = QStringLiteral("from"), to = QStringLiteral("to"), group = QStringLiteral("group");
    const QString client = QStringLiteral("client"), volunteer = QStringLiteral("volunteer"), sql = QStringLiteral("sql");
    const QString pdf = QStringLiteral("pdf"), csv = QStringLiteral("csv"), brackets = QStringLiteral("brackets");
    p.addOption({from,
                 QStringLiteral("First day of the dated reports. The food service and payment reports without it cover all "
                                "dates; the grocery log, geographic summary and demographics start on the first of this month."),
                 QStringLiteral("YYYY-MM-DD")});
    p.addOption({to,
                 QStringLiteral("Last day of the dated reports (default: today for the food service and payment reports, "
                                "the last of this month for the others)."),
                 QStringLiteral("YYYY-MM-DD")});
    p.addOption({group, QStringLiteral("Groups the client and volunteer lists: none (the default), city or zip."), QStringLiteral("BY")});
    p.addOption({client, QStringLiteral("Reports only the client with this ID."), QStringLiteral("ID")});
    p.addOption({volunteer, QStringLiteral("Reports only the volunteer with this ID."), QStringLiteral("ID")});
    p.addOption({sql,
                 QStringLiteral("Reports the records this SELECT over Client or Volunteer returns (run read-only; "
                                "it must return the key and LastName), sorted by last name."),
                 QStringLiteral("STATEMENT")});
    p.addOption({brackets,
                 QStringLiteral("The agency report's age brackets, such as 0-17,18-59,60+ (default: the organisation's, "
                                "set under Tools, Options)."),
                 QStringLiteral("LIST")});
    p.addOption({pdf, QStringLiteral("Writes the report's pages to this PDF file."), QStringLiteral("OUT.pdf")});
    p.addOption({csv,
                 QStringLiteral("Writes the report to this CSV file: Section,Item,Value for the grocery log, geographic summary, "
                                "demographics and agency report (Section,Item,Month,Value when it goes month by month), "
                                "the detail lines for the others."),
                 QStringLiteral("OUT.csv")});
    p.addPositionalArgument(QStringLiteral("NAME"), QStringLiteral("The report."));
    p.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The database file."));
    if (!p.parse(args))
        return usage(p.errorText());
    if (p.isSet(help)) {
        out() << p.helpText();
        return 0;
    }
    if (p.positionalArguments().size() != 2)
        return usage(QStringLiteral("give a report NAME and a database FILE."));
    const Report::CatalogueEntry *entry = Report::findByCliName(p.positionalArguments().at(0));
    if (!entry)
        return usage(QStringLiteral("there is no report '%1'; choose one of %2.").arg(p.positionalArguments().at(0), names()));
    if (!p.isSet(pdf) && !p.isSet(csv))
        return usage(QStringLiteral("give --pdf OUT.pdf, --csv OUT.csv or both."));

    Report::Parameters parameters;
    parameters.name = entry->name;
    const bool datedClients = entry->dialog == Report::Dialog::ByClientAndDate;
    const bool statistics = entry->dialog == Report::Dialog::ByDate || entry->dialog == Report::Dialog::Agency;
    if (!parseDate(p, from, &parameters.startDate) || !parseDate(p, to, &parameters.endDate))
        return usage(QStringLiteral("--from and --to take a date as YYYY-MM-DD."));
    if ((p.isSet(from) || p.isSet(to)) && !datedClients && !statistics)
        return usage(QStringLiteral("the %1 report has no dates.").arg(QString::fromLatin1(entry->cliName)));
    const QDate today = QDate::currentDate();
    if (datedClients && p.isSet(to) && !p.isSet(from))
        return usage(QStringLiteral("--to needs --from; without both the report covers all dates."));
    if (datedClients && p.isSet(from) && !p.isSet(to))
        parameters.endDate = today;
    if (statistics && !p.isSet(from))
        parameters.startDate = QDate(today.year(), today.month(), 1);
    if (statistics && !p.isSet(to))
        parameters.endDate = QDate(today.year(), today.month(), 1).addMonths(1).addDays(-1);
    if (parameters.startDate.isValid() && parameters.endDate.isValid() && parameters.startDate > parameters.endDate)
        return usage(QStringLiteral("the start date %1 is after the end date %2.")
                         .arg(parameters.startDate.toString(Qt::ISODate), parameters.endDate.toString(Qt::ISODate)));

    if (p.isSet(brackets)) {
        if (entry->name != Report::Name::Agency)
            return usage(QStringLiteral("only the agency report takes --brackets."));
        QList<AgeBrackets::Bracket> read;
        QString error;
        if (!AgeBrackets::parse(p.value(brackets), &read, &error))
            return usage(error);
        parameters.ageBrackets = AgeBrackets::text(read);
    }

    if (p.isSet(group)) {
        if (entry->dialog != Report::Dialog::ByGrouped)
            return usage(QStringLiteral("only the client and volunteer lists can be grouped."));
        const QStringList ways = {QStringLiteral("none"), QStringLiteral("city"), QStringLiteral("zip")};
        parameters.groupBy = int(ways.indexOf(p.value(group)));
        if (parameters.groupBy < 0)
            return usage(QStringLiteral("--group takes none, city or zip."));
    }

    // The record scope: the current record, or the current recordset's statement.
    const bool forVolunteers = entry->kind == RecordScope::Kind::Volunteer;
    const QString keyOption = forVolunteers ? volunteer : client;
    const QString otherKey = forVolunteers ? client : volunteer;
    parameters.scope.kind = entry->kind;
    if (p.isSet(otherKey) || (entry->kind == RecordScope::Kind::None && (p.isSet(keyOption) || p.isSet(sql))))
        return usage(QStringLiteral("the %1 report does not take --%2.")
                         .arg(QString::fromLatin1(entry->cliName),
                              p.isSet(otherKey)  ? otherKey
                                  : p.isSet(sql) ? sql
                                                 : keyOption));
    if (p.isSet(keyOption) && p.isSet(sql))
        return usage(QStringLiteral("give --%1 or --sql, not both.").arg(keyOption));
    if (p.isSet(keyOption)) {
        bool ok = false;
        const qint64 id = p.value(keyOption).toLongLong(&ok);
        if (!ok || id <= 0)
            return usage(QStringLiteral("--%1 takes a record number.").arg(keyOption));
        parameters.reportType = RecordScope::CurrentRecord;
        parameters.scope.key = QString::number(id);
    } else if (p.isSet(sql)) {
        if (p.value(sql).trimmed().isEmpty())
            return usage(QStringLiteral("--sql takes a SELECT statement."));
        parameters.reportType = RecordScope::CurrentRecordset;
        parameters.scope.sql = p.value(sql);
    }

    QString error;
    if (!basDatabase::OpenConnection(p.positionalArguments().at(1), &error))
        return failure(error);
    const Report::Result result = Report::build(parameters);
    basDatabase::CloseConnection();
    if (!result.ok)
        return failure(result.error);
    if (p.isSet(csv)) {
        if (!CsvWriter::write(p.value(csv), result.document.csvRows, &error))
            return failure(error);
        out() << "Wrote " << QDir::toNativeSeparators(p.value(csv)) << '\n';
    }
    if (p.isSet(pdf)) {
        if (!ReportRenderer::writePdf(result.document, p.value(pdf), {}, &error))
            return failure(error);
        out() << "Wrote " << QDir::toNativeSeparators(p.value(pdf)) << '\n';
    }
    return 0;
}
