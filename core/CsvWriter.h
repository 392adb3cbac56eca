#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// Delimited text files that spreadsheets open as they are: UTF-8 with a byte
// order mark, CRLF line ends, fields quoted when they must be (or always), and
// embedded quotes doubled.
namespace CsvWriter {

struct Format
{
    QChar separator = u',';
    bool quoteEverything = false;   // every field in double quotes, needed or not
};

// One field as written: quoted when it holds the separator, a quote or a line break.
QString field(const QString &value, const Format &format = {});
// One line of fields, without its line end.
QString line(const QStringList &fields, const Format &format = {});
// The whole file's bytes: the byte order mark, then each row ended by CRLF.
QByteArray encode(const QList<QStringList> &rows, const Format &format = {});
// Writes the rows to path; the file appears whole or not at all. *error says why not.
bool write(const QString &path, const QList<QStringList> &rows, QString *error, const Format &format = {});

}   // namespace CsvWriter
