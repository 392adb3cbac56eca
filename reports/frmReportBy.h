#pragma once

#include <QDialog>

class QGroupBox;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

// Asks which records of a table a report covers: all of them, the current
// recordset of the active list, or its current record.
class frmReportBy : public QDialog
{
    Q_OBJECT
    Q_PROPERTY(bool OKPressed READ OKPressed)
    Q_PROPERTY(QString TableName READ TableName WRITE setTableName)
    Q_PROPERTY(int ReportType READ ReportType WRITE setReportType)

public:
    explicit frmReportBy(QWidget *parent = nullptr);

    bool OKPressed() const { return m_okPressed; }
    QString TableName() const { return m_tableName; }
    // The item word ("Client", "Volunteer") the captions are built from.
    void setTableName(const QString &itemWord);
    int ReportType() const { return m_reportType; }
    // Selects the matching option: 0 all, 1 current recordset, 2 current record.
    void setReportType(int reportType);
    // The two "current" options, offered only when a list of the item's kind is open.
    void setCurrentEnabled(bool enabled);

protected:
    // The grouped variant's recordset option reads "Current &Recordset".
    frmReportBy(const QString &recordsetCaption, QWidget *parent);
    virtual void PopulateControls();
    virtual void storeChoices();
    QVBoxLayout *optionsLayout() const { return m_options; }

private:
    void cmdOK_Click();

    QVBoxLayout *m_options;
    QGroupBox *m_fraToReport;
    QRadioButton *m_optAll;
    QRadioButton *m_optCurrentRecordset;
    QRadioButton *m_optCurrent;
    QPushButton *m_cmdOK;
    QPushButton *m_cmdCancel;
    QString m_tableName;
    int m_reportType = 0;
    bool m_okPressed = false;
};
