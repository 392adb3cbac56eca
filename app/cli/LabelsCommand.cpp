#include "Console.h"
#include "LabelRun.h"
#include "LabelSheets.h"
#include "TmError.h"
#include "basDatabase.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFontInfo>

using Console::err;
using Console::out;

namespace {

int usage(const QString &message)
{
    return Console::complain("labels", message, 2);
}

int failure(const QString &message)
{
    return Console::complain("labels", message, 1);
}

// A whole number from an option, or the fallback when the option is not given.
bool number(const QCommandLineParser &p, const QString &option, int fallback, int *value)
{
    if (!p.isSet(option)) {
        *value = fallback;
        return true;
    }
    bool ok = false;
    *value = p.value(option).trimmed().toInt(&ok);
    return ok;
}

// "Family,Size", as "Arial,10".
bool parseFont(const QString &text, QFont *font)
{
    const QString family = text.section(QLatin1Char(','), 0, -2).trimmed();
    bool ok = false;
    const double size = text.section(QLatin1Char(','), -1).trimmed().toDouble(&ok);
    if (family.isEmpty() || !ok || size < 4 || size > 72)
        return false;
    *font = QFont(family);
    font->setPointSizeF(size);
    return true;
}

}   // namespace

int commandLabels(const QStringList &args)
{
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("Prints the clients' mailing labels on label sheets to a PDF file, as File, Print Labels "
                                               "does: each client's name, address and city, state and zip code."));
    const QCommandLineOption help = p.addHelpOption();
    const QString templ = QStringLiteral("template"), start = QStringLiteral("start"), copies = QStringLiteral("copies");
    const QString namesOnly = QStringLiteral("names-only"), client = QStringLiteral("client"), sql = QStringLiteral("sql");
    const QString fromClient = QStringLiteral("from-client"), font = QStringLiteral("font"), outlines = QStringLiteral("outlines");
    p.addOption({templ, QStringLiteral("The label template, by name or a part of it such as 5160 (default: the default template)."),
                 QStringLiteral("NAME")});
    p.addOption({start, QStringLiteral("The label on the first sheet to start with, counted across each row, then down (default 1)."),
                 QStringLiteral("N")});
    p.addOption({copies, QStringLiteral("Labels per client, printed one after another (default 1)."), QStringLiteral("N")});
    p.addOption({namesOnly, QStringLiteral("Prints the name line alone.")});
    p.addOption({client, QStringLiteral("Prints only the client with this ID."), QStringLiteral("ID")});
    p.addOption({sql,
                 QStringLiteral("Prints the clients this SELECT over Client returns (run read-only; it must return ClientID and "
                                "LastName), sorted by last name."),
                 QStringLiteral("STATEMENT")});
    p.addOption({fromClient, QStringLiteral("Skips the clients before this one in last-name order."), QStringLiteral("ID")});
    p.addOption({font, QStringLiteral("The font family and size in points (default \"Arial,10\")."), QStringLiteral("FAMILY,SIZE")});
    p.addOption({outlines, QStringLiteral("Also draws every label's outline, to check a template against a sheet held to the light.")});
    p.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The database file."));
    p.addPositionalArgument(QStringLiteral("OUT.pdf"), QStringLiteral("The PDF file to write."));
    if (!p.parse(args))
        return usage(p.errorText());
    if (p.isSet(help)) {
        out() << p.helpText();
        return 0;
    }
    if (p.positionalArguments().size() != 2)
        return usage(QStringLiteral("give a database FILE and the OUT.pdf to write."));

    Labels::Request request;
    request.namesOnly = p.isSet(namesOnly);
    if (!number(p, start, 1, &request.startPosition))
        return usage(QStringLiteral("--start takes a label number."));
    if (!number(p, copies, 1, &request.copies))
        return usage(QStringLiteral("--copies takes a number."));
    if (p.isSet(client) && p.isSet(sql))
        return usage(QStringLiteral("give --client or --sql, not both."));
    request.scope.kind = RecordScope::Kind::Client;
    for (const QString &option : {client, fromClient}) {
        bool ok = false;
        if (p.isSet(option) && (p.value(option).toLongLong(&ok) <= 0 || !ok))
            return usage(QStringLiteral("--%1 takes a client number.").arg(option));
    }
    if (p.isSet(client)) {
        request.reportType = RecordScope::CurrentRecord;
        request.scope.key = QString::number(p.value(client).toLongLong());
    } else if (p.isSet(sql)) {
        if (p.value(sql).trimmed().isEmpty())
            return usage(QStringLiteral("--sql takes a SELECT statement."));
        request.reportType = RecordScope::CurrentRecordset;
        request.scope.sql = p.value(sql);
    }
    if (p.isSet(fromClient))
        request.startWith = QString::number(p.value(fromClient).toLongLong());
    QFont labelFont(QStringLiteral("Arial"));
    labelFont.setPointSizeF(10);
    if (p.isSet(font) && !parseFont(p.value(font), &labelFont))
        return usage(QStringLiteral("--font takes a family and a size from 4 to 72 points, as \"Arial,10\"."));
    if (p.isSet(font) && !LabelSheets::fontInstalled(labelFont))
        err() << "tendmark-cli labels: the font '" << labelFont.family() << "' is not installed; the labels use '"
              << QFontInfo(labelFont).family() << "', the closest installed font.\n";

    QString error;
    if (!basDatabase::OpenConnection(p.positionalArguments().at(0), &error))
        return failure(error);
    Labels::Plan plan;
    try {
        const QList<Labels::Template> templates = Labels::loadTemplates();
        const std::optional<Labels::Template> chosen
            = p.isSet(templ) ? Labels::findTemplate(templates, p.value(templ)) : Labels::defaultTemplate(templates);
        if (!chosen) {
            basDatabase::CloseConnection();
            if (templates.isEmpty())
                return failure(QStringLiteral("the database holds no label templates; add one in File, Print Labels, Label Setup."));
            QStringList names;
            for (const Labels::Template &t : templates)
                if (t.description.contains(p.value(templ).trimmed(), Qt::CaseInsensitive))
                    names << t.description;
            if (names.size() > 1)
                return usage(
                    QStringLiteral("'%1' matches more than one template: %2.").arg(p.value(templ), names.join(QStringLiteral("; "))));
            return usage(QStringLiteral("there is no template named '%1'.").arg(p.value(templ)));
        }
        request.sheet = *chosen;
        plan = Labels::planRun(request);
    } catch (const TmError &e) {
        plan.error = e.description();
    }
    basDatabase::CloseConnection();
    if (!plan.ok)
        return failure(plan.error);

    const LabelSheets::Result result
        = LabelSheets::writePdf({request.sheet, plan.pages, labelFont, p.isSet(outlines)}, p.positionalArguments().at(1));
    if (!result.ok)
        return failure(result.error);
    if (result.shortened > 0)
        err() << "tendmark-cli labels: " << result.shortened
              << " label(s) had a line too long or too many lines for the label; they were shortened to fit.\n";
    out() << "Wrote " << plan.clients << " client(s) on " << plan.pages.size() << " sheet(s) of " << request.sheet.description << " to "
          << QDir::toNativeSeparators(p.positionalArguments().at(1)) << '\n';
    return 0;
}
