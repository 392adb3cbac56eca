#include "Console.h"
#include "ExportFile.h"
#include "basDatabase.h"

#include <QCommandLineParser>
#include <QDir>

using Console::err;
using Console::out;

namespace {

int usage(const QString &message)
{
    return Console::complain("export", message, 2);
}

int failure(const QString &message)
{
    return Console::complain("export", message, 1);
}

}   // namespace

int commandExport(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("Writes clients or volunteers to a file for spreadsheets and mail merges, as the "
                                               "Data, Export windows do: comma-separated values (the default), tab-delimited text "
                                               "or an Excel workbook, a header line of the field names, then one line per record "
                                               "by last name."));
    const QCommandLineOption help = p.addHelpOption();
    const QString tab = QStringLiteral("tab"), xlsx = QStringLiteral("xlsx"), fields = QStringLiteral("fields");
    const QString client = QStringLiteral("client"), volunteer = QStringLiteral("volunteer"), sql = QStringLiteral("sql");
    const QString noGuard = QStringLiteral("no-formula-guard");
    p.addOption({tab, QStringLiteral("Writes tab-delimited text.")});
    p.addOption({xlsx, QStringLiteral("Writes an Excel workbook.")});
    p.addOption({fields,
                 QStringLiteral("The fields to write, by their names in the export window, separated by commas "
                                "(default: every field)."),
                 QStringLiteral("\"Last Name,First Name,...\"")});
    p.addOption({client, QStringLiteral("Writes only the client with this ID."), QStringLiteral("ID")});
    p.addOption({volunteer, QStringLiteral("Writes only the volunteer with this ID."), QStringLiteral("ID")});
    p.addOption({sql,
                 QStringLiteral("Writes the records this SELECT over Client or Volunteer returns (run read-only; it must "
                                "return the key and LastName)."),
                 QStringLiteral("STATEMENT")});
    p.addOption({noGuard, QStringLiteral("Writes text beginning with =, +, - or @ as it is, without a leading apostrophe.")});
    p.addPositionalArgument(QStringLiteral("clients|volunteers"), QStringLiteral("What to export."));
    p.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The database file."));
    p.addPositionalArgument(QStringLiteral("OUT"), QStringLiteral("The file to write; it is replaced when it exists."));
    if (!p.parse(args))
        return usage(p.errorText());
    if (p.isSet(help)) {
        out() << p.helpText();
        return 0;
    }
    const QStringList positional = p.positionalArguments();
    if (positional.size() != 3)
        return usage(QStringLiteral("give clients or volunteers, a database FILE and an OUT file."));
    ExportFile::Request request;
    if (positional.at(0) == QLatin1String("clients"))
        request.kind = RecordScope::Kind::Client;
    else if (positional.at(0) == QLatin1String("volunteers"))
        request.kind = RecordScope::Kind::Volunteer;
    else
        return usage(QStringLiteral("export clients or volunteers, not '%1'.").arg(positional.at(0)));
    if (p.isSet(tab) && p.isSet(xlsx))
        return usage(QStringLiteral("give --tab or --xlsx, not both."));
    request.type = p.isSet(tab) ? ExportFile::FileType::TabDelimited
        : p.isSet(xlsx)         ? ExportFile::FileType::Workbook
                                : ExportFile::FileType::CommaSeparated;
    request.formulaGuard = !p.isSet(noGuard);

    if (p.isSet(fields)) {
        QStringList wanted = p.value(fields).split(u',', Qt::SkipEmptyParts);
        wanted.removeIf([](const QString &w) { return w.trimmed().isEmpty(); });
        QStringList unknown;
        request.fields = ExportFields::byCaption(request.kind, wanted, &unknown);
        if (!unknown.isEmpty())
            return usage(QStringLiteral("no field named %1; the fields are: %2.")
                             .arg(unknown.join(QStringLiteral(", ")), ExportFields::captions(request.kind).join(QStringLiteral(", "))));
        if (request.fields.isEmpty())
            return usage(QStringLiteral("--fields names no field."));
    } else {
        request.fields = ExportFields::all(request.kind);
    }

    const bool forVolunteers = request.kind == RecordScope::Kind::Volunteer;
    const QString keyOption = forVolunteers ? volunteer : client;
    const QString otherKey = forVolunteers ? client : volunteer;
    if (p.isSet(otherKey))
        return usage(QStringLiteral("exporting %1 does not take --%2.").arg(positional.at(0), otherKey));
    if (p.isSet(keyOption) && p.isSet(sql))
        return usage(QStringLiteral("give --%1 or --sql, not both.").arg(keyOption));
    request.scope.kind = request.kind;
    if (p.isSet(keyOption)) {
        bool ok = false;
        const qint64 id = p.value(keyOption).toLongLong(&ok);
        if (!ok || id <= 0)
            return usage(QStringLiteral("--%1 takes a record number.").arg(keyOption));
        request.reportType = RecordScope::CurrentRecord;
        request.scope.key = QString::number(id);
    } else if (p.isSet(sql)) {
        request.reportType = RecordScope::CurrentRecordset;
        request.scope.sql = p.value(sql);
    }
    request.path = QDir::current().absoluteFilePath(positional.at(2));

    QString error;
    if (!basDatabase::OpenConnection(positional.at(1), &error))
        return failure(error);
    const ExportFile::Result result = ExportFile::ExportFile(request);
    basDatabase::CloseConnection();
    if (!result.ok)
        return failure(result.error);
    out() << "Wrote " << QDir::toNativeSeparators(positional.at(2)) << " (" << result.rows << (result.rows == 1 ? " record" : " records")
          << ")\n";
    return 0;
}
