#include "AuditLog.h"
#include "Console.h"
#include "basDatabase.h"
#include "basTendmark.h"

#include <QCommandLineParser>

using Console::err;
using Console::out;

int commandAudit(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("Prints the audit log of a TendMark database: who changed what, and when."));
    p.addHelpOption();
    p.addOption({QStringLiteral("client"), QStringLiteral("Only the changes of client ID."), QStringLiteral("ID")});
    p.addOption({QStringLiteral("since"), QStringLiteral("Only the changes on or after DATE."), QStringLiteral("DATE")});
    p.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The database file."));
    p.process(args);
    if (p.positionalArguments().size() != 1) {
        err() << "tendmark-cli audit: give exactly one FILE.\n";
        return 2;
    }
    AuditLog::Filter filter;
    bool ok = true;
    if (p.isSet(QStringLiteral("client")))
        filter.clientId = p.value(QStringLiteral("client")).toLongLong(&ok);
    if (p.isSet(QStringLiteral("since"))) {
        filter.since = basTendmark::ParseDate(p.value(QStringLiteral("since")));
        ok = ok && filter.since.isValid();
    }
    if (!ok) {
        err() << "tendmark-cli audit: --client takes a client number and --since a date.\n";
        return 2;
    }
    QString error;
    if (!basDatabase::OpenConnection(p.positionalArguments().constFirst(), &error)) {
        err() << "tendmark-cli audit: " << error << '\n';
        return 1;
    }
    QList<AuditLog::Entry> entries;
    ok = AuditLog::Read(basDatabase::Connection(), filter, &entries, &error);
    basDatabase::CloseConnection();
    if (!ok) {
        err() << "tendmark-cli audit: " << error << '\n';
        return 1;
    }
    for (const AuditLog::Entry &e : entries)
        out() << AuditLog::Describe(e) << '\n';
    return 0;
}
