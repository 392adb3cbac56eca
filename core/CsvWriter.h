#pragma once

#include <QByteArray>
#include <QList>
#include <QSaveFile>
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

// Writes a file row by row: it appears whole at commit() or not at all, and an
// earlier file of that name stays as it was until then.
class Stream
{
public:
    explicit Stream(const QString &path, const Format &format = {});
    bool open(QString *error);
    void add(const QStringList &row);
    bool commit(QString *error);   // false (and nothing written) when the data could not all be stored

private:
    bool flush();
    bool fail(QString *error);

    QSaveFile m_file;
    Format m_format;
    QByteArray m_buffer;
    bool m_failed = false;
};

}   // namespace CsvWriter
