#include "CsvReader.h"

#include <QDir>
#include <algorithm>
#include <QFile>
#include <QStringDecoder>

namespace CsvReader {

namespace {

// The characters Windows-1252 puts at 0x80..0x9F; the rest of its upper half is Latin-1.
constexpr char16_t kCp1252High[32]
    = {0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD,
       0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

QString fromCp1252(const QByteArray &bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    QChar *out = text.data();
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        *out++ = QChar(b >= 0x80 && b < 0xA0 ? kCp1252High[b - 0x80] : char16_t(b));
    }
    return text;
}

// A text file holds no NUL bytes and few other control characters.
bool looksBinary(const QByteArray &bytes)
{
    const qsizetype n = qMin<qsizetype>(bytes.size(), 65536);
    qsizetype controls = 0;
    for (qsizetype i = 0; i < n; ++i) {
        const auto b = static_cast<unsigned char>(bytes.at(i));
        if (b == 0)
            return true;
        if (b < 0x20 && b != '\t' && b != '\n' && b != '\r' && b != '\f')
            ++controls;
    }
    return controls * 100 > n;
}

bool decode(const QByteArray &bytes, QString *text, QString *encoding, QString *error)
{
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        QStringDecoder utf16(bytes.startsWith("\xFF\xFE") ? QStringConverter::Utf16LE : QStringConverter::Utf16BE);
        *text = utf16.decode(bytes.mid(2));
        *encoding = QStringLiteral("UTF-16");
        if (!utf16.hasError() && !text->contains(QChar(0)))
            return true;
        *error = QStringLiteral("The file is not a text file.");
        return false;
    }
    if (looksBinary(bytes)) {
        *error = QStringLiteral("The file is not a text file: it holds binary data.");
        return false;
    }
    const bool bom = bytes.startsWith("\xEF\xBB\xBF");
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    *text = utf8.decode(bom ? bytes.mid(3) : bytes);
    *encoding = QStringLiteral("UTF-8");
    if (utf8.hasError()) {
        *text = fromCp1252(bytes);
        *encoding = QStringLiteral("Windows-1252");
    }
    return true;
}

// The separator the first line uses more, outside quotes: tab or comma.
QChar detectSeparator(const QString &text)
{
    int commas = 0;
    int tabs = 0;
    bool quoted = false;
    for (const QChar c : text) {
        if (c == u'"')
            quoted = !quoted;
        else if (!quoted && (c == u'\n' || c == u'\r'))
            break;
        else if (!quoted && c == u',')
            ++commas;
        else if (!quoted && c == u'\t')
            ++tabs;
    }
    return tabs > commas ? QChar(u'\t') : QChar(u',');
}

}   // namespace

bool parse(const QByteArray &bytes, Table *table, QString *error)
{
    *table = Table {};
    QString text;
    if (!decode(bytes, &text, &table->encoding, error))
        return false;
    if (text.trimmed().isEmpty()) {
        *error = QStringLiteral("The file is empty.");
        return false;
    }
    const QChar sep = detectSeparator(text);
    table->separator = sep;

    QList<Record> rows;
    Record row {1, {}, {}};
    QString field;
    int line = 1;
    bool quoted = false;   // inside a quoted field
    bool wasQuoted = false;   // the current field began with a quote
    int quoteLine = 0;
    const qsizetype n = text.size();
    const QChar *data = text.constData();
    auto endField = [&] {
        row.fields << field;
        field.clear();
        wasQuoted = false;
    };
    auto endRow = [&] {
        endField();
        // Spreadsheets write rows they once used as nothing but separators.
        const bool blank = std::all_of(row.fields.cbegin(), row.fields.cend(), [](const QString &f) { return f.trimmed().isEmpty(); });
        if (!blank || !row.problem.isEmpty())
            rows << row;
        row = Record {line, {}, {}};
    };
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = data[i];
        if (quoted) {
            if (c == u'"') {
                if (i + 1 < n && data[i + 1] == u'"') {
                    field += u'"';
                    ++i;
                } else {
                    quoted = false;
                }
            } else {
                if (c == u'\n' || (c == u'\r' && (i + 1 >= n || data[i + 1] != u'\n')))
                    ++line;
                field += c;
            }
        } else if (c == u'"' && field.isEmpty() && !wasQuoted) {
            quoted = true;
            wasQuoted = true;
            quoteLine = line;
        } else if (c == sep) {
            endField();
        } else if (c == u'\r' || c == u'\n') {
            if (c == u'\r' && i + 1 < n && data[i + 1] == u'\n')
                ++i;
            ++line;
            endRow();
        } else {
            field += c;
        }
    }
    if (quoted)
        row.problem = QStringLiteral("A quoted value that starts on line %1 is never closed.").arg(quoteLine);
    if (!field.isEmpty() || !row.fields.isEmpty() || wasQuoted)
        endRow();

    if (rows.isEmpty()) {
        *error = QStringLiteral("The file is empty.");
        return false;
    }
    table->header = rows.takeFirst().fields;
    for (QString &name : table->header)
        name = name.trimmed();
    const qsizetype columns = table->header.size();
    for (Record &r : rows)
        if (r.problem.isEmpty() && r.fields.size() != columns)
            r.problem = QStringLiteral("The row has %1 values where the header has %2 columns.").arg(r.fields.size()).arg(columns);
    table->records = std::move(rows);
    return true;
}

bool read(const QString &path, Table *table, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1 cannot be read: %2").arg(QDir::toNativeSeparators(path), file.errorString());
        return false;
    }
    // Far beyond any pantry's list; read whole, such a file would exhaust memory.
    constexpr qint64 kMaxBytes = qint64(1) << 30;
    if (file.size() > kMaxBytes) {
        *error = QStringLiteral("The file is too large to be a list of clients (%1 MB).").arg(file.size() >> 20);
        return false;
    }
    return parse(file.readAll(), table, error);
}

}   // namespace CsvReader
