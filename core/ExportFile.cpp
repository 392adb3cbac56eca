#include "ExportFile.h"

#include "CsvWriter.h"
#include "ExportWorkbook.h"
#include "basDatabase.h"
#include "basTendmark.h"

#include <QLocale>
#include <QSqlError>
#include <QSqlQuery>

namespace ExportFile {
namespace {

using ExportFields::Shape;

// How often the progress callback hears from a running export.
constexpr qint64 kProgressEvery = 500;

Result failure(const QString &text, const QString &title)
{
    Result r;
    r.error = text;
    r.errorTitle = title;
    return r;
}

QString noRecordText(RecordScope::Kind kind, const QString &key)
{
    return QStringLiteral("There is no %1 with ID %2.").arg(RecordScope::tableName(kind).toLower(), key);
}

// The rows of the query written as delimited text.
bool writeText(const Request &request, QSqlQuery &query, qint64 total, const Progress &progress, Result *result)
{
    CsvWriter::Format format;
    format.separator = request.type == FileType::TabDelimited ? QChar(u'\t') : QChar(u',');
    format.quoteEverything = true;
    CsvWriter::Stream stream(request.path, format);
    if (!stream.open(&result->error))
        return false;
    QStringList line;
    for (const ExportFields::Field &f : request.fields)
        line << f.caption;
    stream.add(line);
    while (query.next()) {
        line.clear();
        for (int i = 0; i < request.fields.size(); ++i)
            line << FormatValue(request.fields.at(i), query.value(i), request.formulaGuard);
        stream.add(line);
        if (++result->rows % kProgressEvery == 0 && progress && !progress(result->rows, total)) {
            result->cancelled = true;
            return false;
        }
    }
    return !query.lastError().isValid() && stream.commit(&result->error);
}

// The rows of the query written as a workbook: numbers and dates as such, the rest as text.
bool writeWorkbook(const Request &request, QSqlQuery &query, qint64 total, const Progress &progress, Result *result)
{
    ExportWorkbook book(request.path);
    QStringList header;
    for (const ExportFields::Field &f : request.fields)
        header << f.caption;
    if (!book.open(header, &result->error))
        return false;
    while (query.next()) {
        for (int i = 0; i < request.fields.size(); ++i) {
            const ExportFields::Field &f = request.fields.at(i);
            const QVariant value = query.value(i);
            const QDate date = f.shape == Shape::Date ? QDate::fromString(value.toString(), Qt::ISODate) : QDate();
            if (f.shape == Shape::Number && !value.isNull())
                book.number(i, value.toDouble());
            else if (date.isValid())
                book.date(i, date);
            else
                book.text(i, FormatValue(f, value, false));
        }
        book.nextRow();
        if (++result->rows % kProgressEvery == 0 && progress && !progress(result->rows, total)) {
            result->cancelled = true;
            return false;
        }
    }
    return !query.lastError().isValid() && book.commit(&result->error);
}

}   // namespace

QString title(RecordScope::Kind kind)
{
    return kind == RecordScope::Kind::Volunteer ? QStringLiteral("Export Volunteer Data") : QStringLiteral("Export Client Data");
}

bool CreateSQL(const Request &request, Query *query, QString *error)
{
    const QString table = RecordScope::tableName(request.kind);
    const QString key = RecordScope::keyColumn(request.kind);
    const RecordScope::Selection selection = RecordScope::select(request.kind, request.reportType, request.scope, table);
    if (!selection.ok) {
        *error = selection.error;
        return false;
    }
    QStringList columns;
    for (const ExportFields::Field &f : request.fields)
        columns << (f.expression.isEmpty() ? QStringLiteral("%1.%2").arg(table, f.column)
                                           : f.expression + QStringLiteral(" AS ") + f.column);
    const QString from = QStringLiteral(" FROM %1%2").arg(table, selection.where);
    query->sql = QStringLiteral("SELECT ") + columns.join(QStringLiteral(", ")) + from
        + QStringLiteral(" ORDER BY %1.LastNameKey, %1.FirstNameKey, %1.%2").arg(table, key);
    query->countSql = QStringLiteral("SELECT COUNT(*)") + from;
    query->binds = selection.binds;
    return true;
}

QString FormatValue(const ExportFields::Field &field, const QVariant &value, bool formulaGuard)
{
    QString text;
    switch (field.shape) {
    case Shape::YesNo:
        return value.toLongLong() != 0 ? QStringLiteral("Yes") : QStringLiteral("No");
    case Shape::SSN:
        return basTendmark::FormatSSN(value.toString());
    case Shape::Phone:
        return basTendmark::FormatPhone(value.toString());
    case Shape::Date: {
        const QDate date = QDate::fromString(value.toString(), Qt::ISODate);
        return date.isValid() ? QLocale::c().toString(date, QStringLiteral("dd-MMM-yy")) : value.toString();
    }
    case Shape::Number:
        return value.toString();
    case Shape::Text:
        text = value.toString();
        break;
    }
    text.replace(u'\r', u' ').replace(u'\n', u' ');
    static const QString formulaStarts = QStringLiteral("=+-@");
    if (formulaGuard && !text.isEmpty() && formulaStarts.contains(text.front()))
        text.prepend(u'\'');
    return text;
}

Result ExportFile(const Request &request, const Progress &progress)
{
    const QString fileTitle = title(request.kind);
    if (request.fields.isEmpty())
        return failure(QStringLiteral("At least one field must be checked."), QStringLiteral("Required Field Missing"));
    Query statement;
    QString error;
    if (!CreateSQL(request, &statement, &error))
        return failure(QStringLiteral("Error in SQL syntax:\n%1\nCorrect syntax and try again.").arg(error), QStringLiteral("SQL Error"));
    const qint64 total = basDatabase::ScalarValue(statement.countSql, statement.binds).toLongLong();
    if (request.reportType == RecordScope::CurrentRecord && total == 0)
        return failure(noRecordText(request.kind, request.scope.key), fileTitle);

    QSqlQuery query(basDatabase::Connection());
    query.setForwardOnly(true);
    query.prepare(statement.sql);
    for (const QVariant &bind : statement.binds)
        query.addBindValue(bind);
    if (!query.exec())
        return failure(query.lastError().text(), {});

    Result result;
    const bool written = request.type == FileType::Workbook ? writeWorkbook(request, query, total, progress, &result)
                                                            : writeText(request, query, total, progress, &result);
    if (result.cancelled)
        return result;
    if (query.lastError().isValid())
        return failure(query.lastError().text(), {});
    if (!written) {
        result.errorTitle = fileTitle;
        result.error
            = QStringLiteral("The export file could not be written.\n%1\nAn earlier file of that name is unchanged.").arg(result.error);
        return result;
    }
    result.ok = true;
    if (progress)
        progress(result.rows, total);
    return result;
}

}   // namespace ExportFile
