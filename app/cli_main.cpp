#include "DemoData.h"
#include "PrivateFiles.h"
#include "cli/Console.h"
#include "Schema.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTextStream>

#include <memory>

namespace {

QTextStream &out()
{
    static QTextStream s(stdout);
    return s;
}

QTextStream &err()
{
    static QTextStream s(stderr);
    return s;
}

const char *const kUsage = "Usage: tendmark-cli COMMAND [options]\n"
                           "\n"
                           "Commands:\n"
                           "  new FILE                          create a database with the standard contents\n"
                           "  demo FILE --clients N [--seed S] [--years N] [--family-members N] [--food-services N] [--payments N]\n"
                           "                                    create a database filled with made-up households\n"
                           "  check FILE                        check a database's integrity, references and version\n"
                           "  backup FILE [DIR]                 write a checked copy of a database (default: its backups folder)\n"
                           "  restore BACKUP FILE               put a backup in place of a database, backing that up first\n"
                           "  audit FILE [--client ID] [--since DATE]  print who changed what, and when\n"
                           "  report NAME FILE --pdf OUT | --csv OUT [options]  write a report without windows\n"
                           "  labels FILE OUT.pdf [options]     print clients' mailing labels on label sheets to a PDF file\n"
                           "  export clients|volunteers FILE OUT [options]  write records to CSV, tab-delimited or .xlsx\n"
                           "  import-csv FILE IN.csv [--dry-run] [--add-lookups]  add clients from a spreadsheet's CSV file\n"
                           "  import-mdb IN.mdb OUT.tmdb [--force]  convert an Access database into a new TendMark file\n"
                           "\n"
                           "Run 'tendmark-cli COMMAND --help' for the options of one command.\n";

int commandNew(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("Creates a TendMark database with the standard contents."));
    p.addHelpOption();
    p.addOption({QStringLiteral("years"),
                 QStringLiteral("A pantry's history over N years: about 4 family members, 20 food services and 2 payments a "
                                "household, unless their totals are given."),
                 QStringLiteral("N")});
    p.addOption({QStringLiteral("force"), QStringLiteral("Replace FILE when it exists.")});
    p.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The database file to create."));
    p.process(args);
    if (p.positionalArguments().size() != 1) {
        err() << "tendmark-cli new: give exactly one FILE.\n";
        return 2;
    }
    QString error;
    const QString file = p.positionalArguments().constFirst();
    if (!Schema::CreateDatabase(file, p.isSet(QStringLiteral("force")), &error)) {
        err() << "tendmark-cli new: " << error << '\n';
        return 1;
    }
    out() << "Created " << QFileInfo(file).absoluteFilePath() << '\n';
    return 0;
}

int commandDemo(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("Creates a TendMark database filled with made-up, repeatable demo data."));
    p.addHelpOption();
    p.addOption(
        {QStringLiteral("clients"), QStringLiteral("How many households (default 500)."), QStringLiteral("N"), QStringLiteral("500")});
    p.addOption({QStringLiteral("seed"), QStringLiteral("Seed of the data (default 1): the same seed gives the same data."),
                 QStringLiteral("S"), QStringLiteral("1")});
    // Totals for a pantry-scale database; without them each household draws its own.
    const QString totals[] = {QStringLiteral("family-members"), QStringLiteral("food-services"), QStringLiteral("payments")};
    for (const QString &total : totals)
        p.addOption({total, QStringLiteral("About how many %1 in all.").arg(QString(total).replace(u'-', u' ')), QStringLiteral("N")});
    p.addOption({QStringLiteral("years"),
                 QStringLiteral("A pantry's history over N years: about 4 family members, 20 food services and 2 payments a "
                                "household, unless their totals are given."),
                 QStringLiteral("N")});
    p.addOption({QStringLiteral("force"), QStringLiteral("Replace FILE when it exists.")});
    p.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The database file to create."));
    p.process(args);
    if (p.positionalArguments().size() != 1) {
        err() << "tendmark-cli demo: give exactly one FILE.\n";
        return 2;
    }
    bool okClients = false;
    bool okSeed = false;
    bool okTotals = true;
    DemoData::Options options;
    options.clients = p.value(QStringLiteral("clients")).toInt(&okClients);
    options.seed = p.value(QStringLiteral("seed")).toUInt(&okSeed);
    qint64 *targets[] = {&options.familyMembers, &options.foodServices, &options.payments};
    bool okYears = true;
    if (p.isSet(QStringLiteral("years"))) {
        options.years = p.value(QStringLiteral("years")).toInt(&okYears);
        okYears = okYears && options.years >= 1 && options.years <= 100;
        const int perHousehold[] = {4, 20, 2};
        for (int i = 0; i < 3; ++i)
            *targets[i] = qint64(perHousehold[i]) * options.clients;
    }
    for (int i = 0; i < 3; ++i) {
        if (p.isSet(totals[i])) {
            *targets[i] = p.value(totals[i]).toLongLong(&okTotals);
            okTotals = okTotals && *targets[i] >= 0;
        }
        if (!okTotals)
            break;
    }
    if (!okClients || options.clients < 0 || !okSeed || !okTotals || !okYears) {
        err() << "tendmark-cli demo: --clients, --seed, --family-members, --food-services and --payments take whole numbers, "
                 "--years one from 1 to 100.\n";
        return 2;
    }
    const QString file = p.positionalArguments().constFirst();
    QString error;
    QElapsedTimer timer;
    timer.start();
    const auto generate = [&options](QSqlDatabase db, QString *e) { return DemoData::Generate(db, options, e); };
    if (!Schema::CreateDatabase(file, p.isSet(QStringLiteral("force")), &error, generate)) {
        err() << "tendmark-cli demo: " << error << '\n';
        return 1;
    }
    out() << "Created " << QFileInfo(file).absoluteFilePath() << " with " << options.clients << " households in "
          << QString::number(timer.elapsed() / 1000.0, 'f', 1) << " s\n";
    return 0;
}

int commandCheck(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("Checks a TendMark database without changing it."));
    p.addHelpOption();
    p.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The database file to check."));
    p.process(args);
    if (p.positionalArguments().size() != 1) {
        err() << "tendmark-cli check: give exactly one FILE.\n";
        return 2;
    }
    const QString file = p.positionalArguments().constFirst();
    const QStringList problems = Schema::CheckFile(file);
    if (problems.isEmpty()) {
        out() << file << ": ok (database version " << Schema::InspectFile(file).version << ")\n";
        if (PrivateFiles::IsReadableByOthers(file))
            out() << file << ": other users of this computer can read it\n";
        return 0;
    }
    for (const QString &problem : problems)
        err() << file << ": " << problem << '\n';
    return 1;
}

}   // namespace

int main(int argc, char *argv[])
{
    PrivateFiles::RestrictNewFiles();
    // Reports draw pages and charts, which need a GUI application; without a display, offscreen.
    const bool drawing = argc > 1 && (qstrcmp(argv[1], "report") == 0 || qstrcmp(argv[1], "labels") == 0);
    if (drawing && qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const std::unique_ptr<QCoreApplication> app(drawing ? new QApplication(argc, argv) : new QCoreApplication(argc, argv));
    QCoreApplication::setApplicationName(QStringLiteral("tendmark-cli"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TENDMARK_VERSION));
    QStringList args = QCoreApplication::arguments();
    if (args.size() < 2 || args.at(1) == QLatin1String("--help") || args.at(1) == QLatin1String("-h")) {
        out() << kUsage;
        return args.size() < 2 ? 2 : 0;
    }
    const QString command = args.takeAt(1);
    args[0] = QStringLiteral("tendmark-cli ") + command;
    if (command == QLatin1String("new"))
        return commandNew(args);
    if (command == QLatin1String("demo"))
        return commandDemo(args);
    if (command == QLatin1String("check"))
        return commandCheck(args);
    if (command == QLatin1String("backup"))
        return commandBackup(args);
    if (command == QLatin1String("restore"))
        return commandRestore(args);
    if (command == QLatin1String("audit"))
        return commandAudit(args);
    if (command == QLatin1String("report"))
        return commandReport(args);
    if (command == QLatin1String("labels"))
        return commandLabels(args);
    if (command == QLatin1String("export"))
        return commandExport(args);
    if (command == QLatin1String("import-csv"))
        return commandImportCsv(args);
    if (command == QLatin1String("import-mdb"))
        return commandImportMdb(args);
    err() << "tendmark-cli: unknown command '" << command << "'.\n\n" << kUsage;
    return 2;
}
