#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// Delimited text files as spreadsheets write them: comma or tab separated
// (whichever the first line uses more), fields in double quotes with doubled
// quotes and line breaks inside, UTF-8 with or without a byte order mark,
// UTF-16 with one, anything else read as Windows-1252.
namespace CsvReader {

// One row below the header, with the line of the file it starts on.
struct Record
{
    int line = 0;
    QStringList fields;
    QString problem;   // why the row cannot be used; empty when it can
};

struct Table
{
    QStringList header;
    QList<Record> records;
    QChar separator = u',';
    QString encoding;   // "UTF-8", "UTF-16" or "Windows-1252"
};

// Reads bytes into a table. False with *error saying why when they are not
// a delimited text file at all (empty, binary); row problems (a row with more
// or fewer fields than the header, a quote never closed) are set on the records.
bool parse(const QByteArray &bytes, Table *table, QString *error);
// The same for a file.
bool read(const QString &path, Table *table, QString *error);

}   // namespace CsvReader
