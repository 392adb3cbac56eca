#include "ExportWorkbook.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QVector>
#include <filesystem>
#include <system_error>
#include <xlsxwriter.h>

namespace {

// The widest a column grows to fit its values, in characters.
constexpr double kMaxWidth = 60;
// The longest text a cell holds.
constexpr qsizetype kMaxCellText = 32767;

}   // namespace

struct ExportWorkbook::Book
{
    QString target;
    QString temporary;
    lxw_workbook *workbook = nullptr;
    lxw_worksheet *sheet = nullptr;
    lxw_format *bold = nullptr;
    lxw_format *dateFormat = nullptr;
    lxw_row_t row = 1;
    QVector<double> widths;
    lxw_error error = LXW_NO_ERROR;

    void note(lxw_error e)
    {
        if (error == LXW_NO_ERROR)
            error = e;
    }
};

ExportWorkbook::ExportWorkbook(const QString &path) : m_book(std::make_unique<Book>())
{
    m_book->target = path;
}

ExportWorkbook::~ExportWorkbook()
{
    // Not committed: the half-written workbook goes, the target stays as it was.
    if (m_book->workbook)
        lxw_workbook_free(m_book->workbook);
    if (!m_book->temporary.isEmpty())
        QFile::remove(m_book->temporary);
}

bool ExportWorkbook::open(const QStringList &header, QString *error)
{
    Book &b = *m_book;
    const QFileInfo target(b.target);
    if (!target.dir().exists()) {
        *error = QStringLiteral("%1 cannot be written: the folder %2 does not exist.")
                     .arg(QDir::toNativeSeparators(b.target), QDir::toNativeSeparators(target.absolutePath()));
        return false;
    }
    // Reserves a name beside the target, so that the final rename stays on one disk.
    QTemporaryFile reserve(target.absoluteDir().filePath(QStringLiteral(".%1-XXXXXX.tmp").arg(target.fileName())));
    reserve.setAutoRemove(false);
    if (!reserve.open()) {
        *error = QStringLiteral("%1 cannot be written: %2").arg(QDir::toNativeSeparators(b.target), reserve.errorString());
        return false;
    }
    b.temporary = reserve.fileName();
    reserve.close();

    lxw_workbook_options options {};
    options.constant_memory = LXW_TRUE;
    const QByteArray name = QFile::encodeName(b.temporary);
    b.workbook = workbook_new_opt(name.constData(), &options);
    b.sheet = b.workbook ? workbook_add_worksheet(b.workbook, nullptr) : nullptr;
    if (!b.sheet) {
        *error = QStringLiteral("%1 cannot be written: the workbook could not be started.").arg(QDir::toNativeSeparators(b.target));
        return false;
    }
    b.bold = workbook_add_format(b.workbook);
    format_set_bold(b.bold);
    b.dateFormat = workbook_add_format(b.workbook);
    format_set_num_format(b.dateFormat, "mm/dd/yyyy");
    b.widths.fill(0, header.size());
    for (int c = 0; c < header.size(); ++c) {
        b.note(worksheet_write_string(b.sheet, 0, lxw_col_t(c), header.at(c).toUtf8().constData(), b.bold));
        widen(c, header.at(c).size());
    }
    worksheet_freeze_panes(b.sheet, 1, 0);
    return true;
}

void ExportWorkbook::widen(int column, qsizetype characters)
{
    double &w = m_book->widths[column];
    w = std::min(kMaxWidth, std::max(w, double(characters) + 2));
}

void ExportWorkbook::text(int column, const QString &value)
{
    if (value.isEmpty())
        return;
    const QString cell = value.left(kMaxCellText);
    m_book->note(worksheet_write_string(m_book->sheet, m_book->row, lxw_col_t(column), cell.toUtf8().constData(), nullptr));
    widen(column, cell.size());
}

void ExportWorkbook::number(int column, double value)
{
    m_book->note(worksheet_write_number(m_book->sheet, m_book->row, lxw_col_t(column), value, nullptr));
    widen(column, QString::number(value).size());
}

void ExportWorkbook::date(int column, const QDate &value)
{
    // A workbook's dates start in 1900; an earlier one stays as it was stored.
    if (value.year() < 1900) {
        text(column, value.toString(Qt::ISODate));
        return;
    }
    lxw_datetime when {value.year(), value.month(), value.day(), 0, 0, 0};
    m_book->note(worksheet_write_datetime(m_book->sheet, m_book->row, lxw_col_t(column), &when, m_book->dateFormat));
    widen(column, 10);
}

void ExportWorkbook::nextRow()
{
    ++m_book->row;
}

bool ExportWorkbook::commit(QString *error)
{
    Book &b = *m_book;
    for (int c = 0; c < b.widths.size(); ++c)
        worksheet_set_column(b.sheet, lxw_col_t(c), lxw_col_t(c), b.widths.at(c), nullptr);
    const lxw_error closed = workbook_close(b.workbook);
    b.workbook = nullptr;
    b.note(closed);
    if (b.error != LXW_NO_ERROR) {
        *error
            = QStringLiteral("%1 cannot be written: %2").arg(QDir::toNativeSeparators(b.target), QString::fromUtf8(lxw_strerror(b.error)));
        return false;
    }
    std::error_code failed;
    std::filesystem::rename(std::filesystem::path(b.temporary.toStdU16String()), std::filesystem::path(b.target.toStdU16String()), failed);
    if (failed) {
        *error
            = QStringLiteral("%1 cannot be written: %2").arg(QDir::toNativeSeparators(b.target), QString::fromStdString(failed.message()));
        return false;
    }
    b.temporary.clear();
    return true;
}
