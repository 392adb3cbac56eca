#include "CsvWriter.h"

#include <QDir>
#include <QSaveFile>

namespace CsvWriter {

QString field(const QString &value, const Format &format)
{
    const bool needsQuotes = format.quoteEverything || value.contains(format.separator) || value.contains(u'"') || value.contains(u'\n')
        || value.contains(u'\r');
    if (!needsQuotes)
        return value;
    QString quoted = value;
    quoted.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
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
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = QStringLiteral("%1 cannot be written: %2").arg(QDir::toNativeSeparators(path), file.errorString());
        return false;
    }
    const QByteArray bytes = encode(rows, format);
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        *error = QStringLiteral("%1 cannot be written: %2").arg(QDir::toNativeSeparators(path), file.errorString());
        file.cancelWriting();
        return false;
    }
    return true;
}

}   // namespace CsvWriter
