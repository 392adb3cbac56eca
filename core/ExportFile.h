#pragma once

#include "ExportFields.h"
#include "Query.h"
#include "RecordScope.h"

#include <QVariant>
#include <functional>

// Clients and volunteers written to a file for other programs: comma-separated
// or tab-delimited text, every value quoted, or an Excel workbook. The dialogs
// and tendmark-cli export both write through here.
namespace ExportFile {

enum class FileType { CommaSeparated, TabDelimited, Workbook };

struct Request
{
    RecordScope::Kind kind = RecordScope::Kind::Client;
    int reportType = RecordScope::AllRecords;
    RecordScope::ActiveScope scope;
    QList<ExportFields::Field> fields;   // the checked fields, in export order
    FileType type = FileType::CommaSeparated;
    bool formulaGuard = true;   // text a spreadsheet would run as a formula gets a leading apostrophe
    QString path;
};

// Called now and then while the rows are written; false cancels the export.
using Progress = std::function<bool(qint64 done, qint64 total)>;

struct Result
{
    bool ok = false;
    bool cancelled = false;
    QString error;
    QString errorTitle;   // empty: an unexpected database failure, for the error reporter
    qint64 rows = 0;
};

// "Export Client Data" or "Export Volunteer Data".
QString title(RecordScope::Kind kind);

// The statement reading the request's fields of the chosen records, by last name.
// A hand-typed statement runs read-only first; when the database refuses it,
// false with the reason in *error.
bool CreateSQL(const Request &request, Query *query, QString *error);

// One value as the text files carry it, before quoting: line breaks become
// blanks, numbers, phones and dates take their display forms.
QString FormatValue(const ExportFields::Field &field, const QVariant &value, bool formulaGuard);

// Writes the file. It appears whole or not at all; an earlier file of the same
// name stays as it was on failure or cancel.
Result ExportFile(const Request &request, const Progress &progress = {});

}   // namespace ExportFile
