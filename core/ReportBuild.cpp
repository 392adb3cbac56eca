#include "ReportBuilders.h"

#include "OptionsStore.h"
#include "TmError.h"
#include "basDatabase.h"
#include "basTendmark.h"

#include <QCoreApplication>
#include <QLocale>

namespace Report {
namespace detail {

bool Context::step(qint64 done, qint64 total)
{
    if (progress && !progress(done, total))
        cancelled = true;
    return !cancelled;
}

bool Context::fail(const QString &text, const QString &title)
{
    error = text;
    errorTitle = title;
    return false;
}

bool scopeSelection(Context &context, RecordScope::Kind kind, const QString &alias, RecordScope::Selection *selection)
{
    const Parameters &p = context.parameters;
    if (p.reportType == RecordScope::CurrentRecordset && p.scope.sql.trimmed().isEmpty())
        return context.fail(QStringLiteral("There is no current recordset."));
    *selection = RecordScope::select(kind, p.reportType, p.scope, alias);
    if (!selection->ok)
        return context.fail(QStringLiteral("Error in SQL syntax:\n%1\nCorrect syntax and try again.").arg(selection->error),
                            QStringLiteral("SQL Error"));
    if (p.reportType == RecordScope::CurrentRecord) {
        const CatalogueEntry *entry = find(p.name);
        if (p.scope.key.trimmed().isEmpty())
            return context.fail(QString::fromUtf8(entry->noRecordText), QString::fromUtf8(entry->noRecordTitle));
        const QString table = RecordScope::tableName(kind);
        const QVariant found = basDatabase::ScalarValue(QStringLiteral("SELECT COUNT(*) FROM %1 %2%3").arg(table, alias, selection->where),
                                                        selection->binds);
        if (found.toLongLong() == 0)
            return context.fail(QStringLiteral("There is no %1 with ID %2.").arg(table.toLower(), p.scope.key),
                                QString::fromUtf8(entry->noRecordTitle));
    }
    return true;
}

QString isoDate(const QDate &date)
{
    return date.toString(Qt::ISODate);
}

QString shownDate(const QVariant &stored)
{
    return stored.isNull() ? QString() : basTendmark::FormatIsoDate(stored.toString());
}

QString shortDate(const QDate &date)
{
    return QLocale::c().toString(date, QStringLiteral("dd-MMM-yy"));
}

QVariant calendarAge(const QVariant &birthDate, const QDate &today)
{
    const QDate born = QDate::fromString(birthDate.toString(), Qt::ISODate);
    return born.isValid() ? QVariant(today.year() - born.year()) : QVariant();
}

QString text(const QVariant &value)
{
    return value.isNull() ? QString() : value.toString().trimmed();
}

QString count(qint64 n)
{
    return QString::number(n);
}

namespace {

// Each report's printed title and the builder that fills its document.
struct Builder
{
    Name name;
    const char *title;
    bool (*build)(Context &);
};

const Builder kBuilders[] = {
    {Name::ClientList, "Client List", personList},
    {Name::ClientDetail, "Client Detail Report", clientDetail},
    {Name::FoodService, "Food Service History By Client", foodService},
    {Name::PaymentHistory, "Payment History By Client", paymentHistory},
    {Name::GroceryLog, "Grocery Log", groceryLog},
    {Name::GeographicSummary, "Geographic Summary Report", geographicSummary},
    {Name::Demographics, "Demographics Report", demographics},
    {Name::VolunteerList, "Volunteer List", personList},
    {Name::VolunteerDetail, "Volunteer Detail Report", volunteerDetail},
    {Name::Agency, "Agency Report", agency},
};

PageHeader pageHeader()
{
    PageHeader header;
    Organization o;
    try {
        o = OptionsStore::readOrganization();
    } catch (const TmError &) {
        return header;   // the header stays blank
    }
    header.organizationName = o.name;
    header.organizationAddress = o.address + QStringLiteral("\r\n") + o.city
        + (!o.city.isEmpty() && !o.state.isEmpty() ? QStringLiteral(", ") : QString()) + o.state + QLatin1Char(' ') + o.zip;
    header.logoPath = o.logo;
    return header;
}

// Checks the dates the report needs and sets its date caption.
bool setDates(Context &context)
{
    const Parameters &p = context.parameters;
    const bool datedClients = p.name == Name::FoodService || p.name == Name::PaymentHistory;
    const bool statistics
        = p.name == Name::GroceryLog || p.name == Name::GeographicSummary || p.name == Name::Demographics || p.name == Name::Agency;
    if (!datedClients && !statistics)
        return true;
    if (datedClients && p.startDate.isNull()) {
        context.document.dateCaption = QStringLiteral("All Dates");
        return true;
    }
    if (!p.startDate.isValid() || !p.endDate.isValid())
        return context.fail(QStringLiteral("Choose a start date and an end date."));
    if (p.startDate > p.endDate)
        return context.fail(QStringLiteral("The start date %1 is after the end date %2.")
                                .arg(basTendmark::FormatDate(p.startDate), basTendmark::FormatDate(p.endDate)));
    const QString separator = p.name == Name::GroceryLog ? QStringLiteral(" To ") : QStringLiteral("  To  ");
    context.document.dateCaption = QStringLiteral("For Dates: ") + shortDate(p.startDate) + separator + shortDate(p.endDate);
    return true;
}

}   // namespace
}   // namespace detail

Result build(const Parameters &parameters, const Progress &progress)
{
    using namespace detail;
    Result result;
    const CatalogueEntry *entry = find(parameters.name);
    const Builder *builder = nullptr;
    for (const Builder &b : kBuilders)
        if (b.name == parameters.name)
            builder = &b;
    if (!entry || !builder) {
        result.error = QStringLiteral("There is no such report.");
        return result;
    }
    if (!basDatabase::IsOpen()) {
        result.error = QStringLiteral("There is no current database open.");
        return result;
    }

    Context context;
    context.parameters = parameters;
    context.today = parameters.today.isValid() ? parameters.today : QDate::currentDate();
    context.progress = progress;
    Document &d = context.document;
    const bool grouped = entry->groupedCaption && parameters.groupBy != 0;
    d.caption = QCoreApplication::translate("Report", grouped ? entry->groupedCaption : entry->caption);
    d.title = QString::fromUtf8(builder->title);
    if (grouped)
        d.title2 = parameters.groupBy == 1 ? QStringLiteral("Grouped By City") : QStringLiteral("Grouped By Zip Code");
    d.runDate = context.today;

    bool ok = false;
    try {
        d.header = pageHeader();
        ok = setDates(context) && builder->build(context);
    } catch (const TmError &e) {
        context.fail(e.plainWords().isEmpty() ? e.description() : e.plainWords());
    }
    result.cancelled = context.cancelled;
    result.ok = ok && !context.cancelled;
    if (!result.ok) {
        result.error = context.cancelled ? QString() : context.error;
        result.errorTitle = context.errorTitle.isEmpty() ? QString::fromUtf8(builder->title) : context.errorTitle;
        return result;
    }
    result.document = std::move(context.document);
    return result;
}

}   // namespace Report
