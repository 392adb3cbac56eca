#include "CsvWriter.h"

#include <QDir>
#include <QSaveFile>

namespace CsvWriter {

QString field(const QString &value, const Format &format)
{
    const bool hasQuote = value.contains(u'"');
    const bool needsQuotes
        = format.quoteEverything || hasQuote || value.contains(format.separator) || value.contains(u'\n') || value.contains(u'\r');
    if (!needsQuotes)
        return value;
    QString quoted;
    quoted.reserve(value.size() + 2);
    quoted += u'"';
    if (hasQuote)
        quoted += QString(value).replace(QLatin1Char('"'), QStringLiteral("\"\""));
    else
        quoted += value;
    quoted += u'"';
    return quoted;
}

QString line(const QStringList &fields, const Format &format)
{
    QString text;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (i > 0)
            text += format.separator;
        text += field(fields.at(i), format);
    }
    return text;
}

QByteArray encode(const QList<QStringList> &rows, const Format &format)
{
    QByteArray bytes("\xEF\xBB\xBF");
    for (const QStringList &row : rows) {
        bytes += line(row, format).toUtf8();
        bytes += "\r\n";
    }
    return bytes;
}

bool write(const QString &path, const QList<QStringList> &rows, QString *error, const Format &format)
{
    Stream stream(path, format);
    if (!stream.open(error))
        return false;
    for (const QStringList &row : rows)
        stream.add(row);
    return stream.commit(error);
}

Stream::Stream(const QString &path, const Format &format) : m_file(path), m_format(format) { }

bool Stream::open(QString *error)
{
    if (!m_file.open(QIODevice::WriteOnly))
        return fail(error);
    m_buffer = "\xEF\xBB\xBF";
    return true;
}

void Stream::add(const QStringList &row)
{
    m_buffer += line(row, m_format).toUtf8();
    m_buffer += "\r\n";
    if (m_buffer.size() >= 1 << 20)
        flush();
}

bool Stream::flush()
{
    if (!m_failed && m_file.write(m_buffer) != m_buffer.size())
        m_failed = true;
    m_buffer.clear();
    return !m_failed;
}

bool Stream::commit(QString *error)
{
    if (!flush()) {
        fail(error);
        m_file.cancelWriting();
        return false;
    }
    return m_file.commit() || fail(error);
}

bool Stream::fail(QString *error)
{
    *error = QStringLiteral("%1 cannot be written: %2").arg(QDir::toNativeSeparators(m_file.fileName()), m_file.errorString());
    return false;
}

}   // namespace CsvWriter
