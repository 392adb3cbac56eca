#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <memory>

// An Excel workbook of one sheet: a bold, frozen header row, then rows of
// text, numbers and dates. It is written beside its target under a temporary
// name and renamed over the target only when complete.
class ExportWorkbook
{
public:
    explicit ExportWorkbook(const QString &path);
    ~ExportWorkbook();
    ExportWorkbook(const ExportWorkbook &) = delete;
    ExportWorkbook &operator=(const ExportWorkbook &) = delete;

    bool open(const QStringList &header, QString *error);
    // Cells of the current row; an empty text leaves its cell empty.
    void text(int column, const QString &value);
    void number(int column, double value);
    void date(int column, const QDate &value);
    void nextRow();
    bool commit(QString *error);

private:
    void widen(int column, qsizetype characters);

    struct Book;
    std::unique_ptr<Book> m_book;
};
