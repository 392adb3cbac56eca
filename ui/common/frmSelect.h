#pragma once

#include "Prompt.h"
#include "Query.h"

#include <QDialog>
#include <optional>

class QLabel;
class QPushButton;
class QTableView;

// The record picker: the rows of a query in a read-only grid under a caption and
// a label set by the caller; returns the key of the row the user chose.
class frmSelect : public QDialog
{
    Q_OBJECT

public:
    explicit frmSelect(QWidget *parent = nullptr);

    void setFormCaption(const QString &caption);
    void setFormLabel(const QString &label);
    // The rows to offer; the query's first column is the row's key. countSql: the same number of rows, faster.
    void setRecordset(const Query &query);

    QString FormCaption() const { return windowTitle(); }
    QString FormLabel() const { return m_formLabel; }
    QString RecordID() const { return m_recordId; }
    bool OKClicked() const { return m_okClicked; }

    // The grid's column specification for the query's fields (the key excluded).
    static QString ColumnSpec(const QStringList &fieldNames);

    // Shows the picker modally for a request; the chosen key, or none on Cancel.
    static std::optional<QString> pick(const Prompt::PickRequest &request, QWidget *parent);

private:
    void FormatGrid(const QStringList &fieldNames);
    void PopulateGrid(const Query &query);
    void ResizeGrid();
    void updateOkButton();
    void cmdOK_Click();
    void cmdCancel_Click();

    QLabel *m_lblGrid;
    QTableView *m_grdData;
    QPushButton *m_cmdOK;
    QPushButton *m_cmdCancel;
    QString m_formLabel;
    QString m_recordId;
    bool m_okClicked = false;
};
