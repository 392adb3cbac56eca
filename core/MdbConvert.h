#pragma once

#include "MdbSource.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

// Converts an Access (.mdb) database of the organisation's old program into a new
// TendMark file: every table and row, keys kept as they are, values in TendMark's
// forms. The Access file is only read. The new file is built beside the target and
// put in place only when complete and checked. Whatever the TendMark schema would
// refuse is kept where it can be (an unknown lookup becomes empty, a text too long
// is cut) and every such change is listed; only rows that cannot be kept (a food
// service of a client who is not in the file) are left out, and listed too.
namespace MdbConvert {

// What one table gave and took, and its totals as checked against the source.
struct TableCount
{
    QString table;
    qint64 read = 0;
    qint64 written = 0;
    QStringList totals;   // "AmountPaid 869.40", as checked
};

struct Report
{
    bool ok = false;
    bool cancelled = false;
    QString error;   // why nothing was written, when not ok
    QList<TableCount> tables;
    QStringList notes;   // tables and columns not copied, columns the file lacks, times of day dropped
    QStringList changes;   // one line per value changed or row left out
};

// Reports the table being copied (index from 0 of count) and the rows copied of it so far; false cancels.
struct Step
{
    int table = 0;
    int tables = 0;
    QString name;
    qint64 rows = 0;
};
using Progress = std::function<bool(const Step &)>;

// The tables a converted file holds, in the order they are copied.
const QStringList &Tables();

// Converts the Access file at source into a new TendMark file at target. Refuses an
// existing target unless overwrite is set, and never replaces the source itself.
Report ConvertFile(const QString &source, const QString &target, bool overwrite, const Progress &progress = {});
// The same from any reader of Access tables.
Report Convert(MdbSource::Reader &source, const QString &sourceName, const QString &target, bool overwrite, const Progress &progress = {});

// The report for the user: what was copied, what was checked, every change (or the
// first maxChanges of them and how many more).
QStringList Describe(const Report &report, int maxChanges = -1);
// Saves the lines as a text file (UTF-8, CRLF), complete or not at all.
bool SaveReport(const QString &path, const QStringList &lines, QString *error);

// Value conversions.
// A Date/Time value (days since 1899-12-30) as a calendar date, dropping the time of
// day; none for the "no date" value 1899-12-30 itself.
std::optional<QDate> DateFromDays(double days, bool *hadTime = nullptr);
// A Currency value in ten-thousandths as whole cents, rounding half to even.
qint64 CentsFromMoney(qint64 tenThousandths, bool *rounded = nullptr);
// The text cut to at most length characters, never inside a character.
QString CutText(const QString &text, int length);
// The ten-thousandths as a decimal text: "869.40", "0.1234".
QString MoneyText(qint64 tenThousandths);

}   // namespace MdbConvert
