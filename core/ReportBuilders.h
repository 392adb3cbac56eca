#pragma once

// The report builders' shared parts. Only the Report*.cpp files of core include this.
#include "ReportDocument.h"

#include <QSqlQuery>
#include <QVariant>

namespace Report::detail {

// One build under way: what was asked, the day ages count from, and the document filled so far.
struct Context
{
    Parameters parameters;
    QDate today;
    Progress progress;
    Document document;
    bool cancelled = false;
    QString error;
    QString errorTitle;

    // Reports progress; false (and cancelled set) when the user cancels.
    bool step(qint64 done, qint64 total);
    bool fail(const QString &text, const QString &title = {});
};

// Each fills context.document's title, blocks and CSV rows; false on failure or cancel.
bool personList(Context &context);   // the client and volunteer lists
bool clientDetail(Context &context);
bool volunteerDetail(Context &context);
bool foodService(Context &context);
bool paymentHistory(Context &context);
bool groceryLog(Context &context);
bool geographicSummary(Context &context);
bool demographics(Context &context);
bool agency(Context &context);

// The records the parameters' scope picks from kind's table, as a condition on alias.
// On a hand-typed statement the database refuses, fails with the "SQL Error" message;
// on a current record that is not there, with a message naming it.
bool scopeSelection(Context &context, RecordScope::Kind kind, const QString &alias, RecordScope::Selection *selection);

QString isoDate(const QDate &date);
QString shownDate(const QVariant &stored);   // ISO text as mm/dd/yyyy; "" for null
QString shortDate(const QDate &date);   // "dd-MMM-yy"
// Calendar years between an ISO birth date and today; null when there is no birth date.
QVariant calendarAge(const QVariant &birthDate, const QDate &today);
QString text(const QVariant &value);   // "" for null, trimmed otherwise
QString count(qint64 n);

}   // namespace Report::detail
