#include "Backups.h"
#include "Console.h"

#include <QCommandLineParser>
#include <QDir>

using Console::err;
using Console::out;

int commandBackup(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("Writes a checked copy of a TendMark database and thins out the old copies."));
    p.addHelpOption();
    p.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The database to back up."));
    p.addPositionalArgument(QStringLiteral("DIR"), QStringLiteral("The folder of the copies (default: the backups folder)."),
                            QStringLiteral("[DIR]"));
    p.process(args);
    const QStringList files = p.positionalArguments();
    if (files.isEmpty() || files.size() > 2) {
        err() << "tendmark-cli backup: give FILE and at most one DIR.\n";
        return 2;
    }
    QString made, error;
    if (!Backups::BackupNow(files.at(0), files.value(1), &made, &error)) {
        err() << "tendmark-cli backup: " << error << '\n';
        return 1;
    }
    out() << "Backed up to " << QDir::toNativeSeparators(made) << '\n';
    return 0;
}

int commandRestore(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("Puts a backup in place of a database, after backing up the database."));
    p.addHelpOption();
    p.addPositionalArgument(QStringLiteral("BACKUP"), QStringLiteral("The backup copy."));
    p.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The database to replace."));
    p.process(args);
    const QStringList files = p.positionalArguments();
    if (files.size() != 2) {
        err() << "tendmark-cli restore: give BACKUP and FILE.\n";
        return 2;
    }
    QString error;
    if (!Backups::Restore(files.at(0), files.at(1), &error)) {
        err() << "tendmark-cli restore: " << error << '\n';
        return 1;
    }
    out() << "Restored " << QDir::toNativeSeparators(files.at(1)) << " from " << QDir::toNativeSeparators(files.at(0)) << '\n';
    return 0;
}
