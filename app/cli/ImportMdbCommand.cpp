#include "Console.h"
#include "MdbConvert.h"

#include <QCommandLineParser>
#include <QDir>

using Console::err;
using Console::out;

int commandImportMdb(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(
        QStringLiteral("Converts an Access 2000-2003 database (.mdb) of the organisation's old program into a new TendMark file. "
                       "The Access file is only read; the new file appears only when complete and checked."));
    p.addHelpOption();
    p.addOption({QStringLiteral("force"), QStringLiteral("Replace OUT.tmdb when it exists.")});
    p.addPositionalArgument(QStringLiteral("IN.mdb"), QStringLiteral("The Access database to convert."));
    p.addPositionalArgument(QStringLiteral("OUT.tmdb"), QStringLiteral("The TendMark file to create."));
    p.process(args);
    if (p.positionalArguments().size() != 2) {
        err() << "tendmark-cli import-mdb: give the IN.mdb to convert and the OUT.tmdb to create.\n";
        return 2;
    }
    const QString input = p.positionalArguments().at(0);
    const QString output = p.positionalArguments().at(1);
    const MdbConvert::Report report = MdbConvert::ConvertFile(input, output, p.isSet(QStringLiteral("force")));
    if (!report.ok) {
        err() << "tendmark-cli import-mdb: " << report.error << '\n';
        return 1;
    }
    out() << "Converted " << QDir::toNativeSeparators(input) << " into " << QDir::toNativeSeparators(output) << ".\n";
    for (const QString &line : MdbConvert::Describe(report))
        out() << line << '\n';
    return 0;
}
