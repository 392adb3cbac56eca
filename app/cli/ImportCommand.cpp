#include "ClientImport.h"
#include "Console.h"
#include "CsvReader.h"
#include "TmError.h"
#include "basDatabase.h"

#include <QCommandLineParser>

using Console::err;
using Console::out;

int commandImportCsv(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(
        QStringLiteral("Adds clients from a CSV or tab-delimited file whose header names the client fields as the export does. "
                       "Every row is checked first; the good rows are added in one go, or none."));
    p.addHelpOption();
    p.addOption({QStringLiteral("dry-run"), QStringLiteral("Check every row and say what would be imported; change nothing.")});
    p.addOption({QStringLiteral("add-lookups"),
                 QStringLiteral("Add descriptions the lookup tables do not hold yet (else those fields stay empty).")});
    p.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The database file."));
    p.addPositionalArgument(QStringLiteral("IN.csv"), QStringLiteral("The file to import."));
    p.process(args);
    if (p.positionalArguments().size() != 2) {
        err() << "tendmark-cli import-csv: give a database FILE and the IN.csv to import.\n";
        return 2;
    }
    const QString database = p.positionalArguments().at(0);
    const QString input = p.positionalArguments().at(1);
    const bool dryRun = p.isSet(QStringLiteral("dry-run"));
    const bool addLookups = p.isSet(QStringLiteral("add-lookups"));

    CsvReader::Table table;
    QString error;
    if (!CsvReader::read(input, &table, &error)) {
        err() << "tendmark-cli import-csv: " << error << '\n';
        return 1;
    }
    if (table.records.isEmpty()) {
        err() << "tendmark-cli import-csv: the file has no rows below its header.\n";
        return 1;
    }
    const QList<int> mapping = ClientImport::automaticMapping(table.header);
    if (const QStringList missing = ClientImport::unmappedRequired(mapping); !missing.isEmpty()) {
        err() << "tendmark-cli import-csv: the header names no column for " << missing.join(QStringLiteral(", "))
              << ". Name the columns as the export does: ";
        QStringList captions;
        for (const ClientImport::Field &f : ClientImport::fields())
            captions << f.name();
        err() << captions.join(QStringLiteral(", ")) << ".\n";
        return 1;
    }
    if (!basDatabase::OpenConnection(database, &error)) {
        err() << "tendmark-cli import-csv: " << error << '\n';
        return 1;
    }
    ClientImport::Plan plan;
    try {
        plan = ClientImport::check(table, mapping);
    } catch (const TmError &e) {
        basDatabase::CloseConnection();
        err() << "tendmark-cli import-csv: " << e.description() << '\n';
        return 1;
    }
    const int code = plan.importable() > 0 ? 0 : 1;
    if (!dryRun && plan.importable() > 0) {
        const ClientImport::Outcome outcome = ClientImport::run(plan, addLookups);
        if (!outcome.committed) {
            basDatabase::CloseConnection();
            err() << "tendmark-cli import-csv: nothing was imported: " << outcome.error << '\n';
            return 1;
        }
    }
    basDatabase::CloseConnection();
    for (const QString &line : ClientImport::describe(plan, addLookups))
        out() << line << '\n';
    out() << ClientImport::summary(plan, !dryRun) << '\n';
    return code;
}
