#pragma once

#include "FieldInfo.h"
#include "Query.h"

#include <QList>
#include <QString>
#include <QVariantList>

class QComboBox;
class QTableView;
class QWidget;
class QMdiArea;
class Recordset;
class GridModel;

// Moving data between the database and the controls of a form. A grid keeps its
// column specification in the dynamic property "ColumnSpec"; a data-entry
// control names its column in "DataField" and its flags in "Tag" ("R" first
// when the field is required).
namespace basTendmark {

constexpr int kTwipsPerPixel = 15;
inline int TwipsToPixels(int twips)
{
    return twips / kTwipsPerPixel;
}

GridModel *Model(QTableView *grid);   // the grid's model, created on first use
void FormatDataGrid(QTableView *grid);
// Shows the query's rows; an empty query leaves the grid with its one blank row.
void PopulateDataGrid(QTableView *grid, const Query &query);
void RemoveGridRow(QTableView *grid, int row);
void SelectRow(QTableView *grid, int row);
qint64 GridRowKey(QTableView *grid, int row);   // the key behind a row; 0 for the blank row
QString GridText(QTableView *grid, int row, int column);

void PopulateDataCombo(QComboBox *combo, const QString &table, const QString &keyColumn, const QString &displayColumn);
// Fills each drop-down among the controls whose column of the table refers to a lookup table.
void PopulateLookupCombos(const QList<QWidget *> &controls, const QString &table);
// Fills a drop-down with the zip codes.
void PopulateZipCombo(QComboBox *combo);
int GetComboItemIndex(QComboBox *combo, const FieldInfo &field, const QString &value);

QString DataField(const QWidget *control);
bool IsRequired(const QWidget *control);   // its Tag begins with "R"
QString GetFieldValue(const Recordset &recordset, const QString &column);
QString GetControlValue(const QWidget *control, const FieldInfo &field);
void SetControlValue(QWidget *control, const FieldInfo &field, const QString &text);
void PopulateDataControls(const QList<QWidget *> &controls, const Recordset &recordset);

void SetMDIChildDimensions(QWidget *window, QMdiArea *area);
void SaveMDIChildDimensions(const QWidget *window);

}   // namespace basTendmark
