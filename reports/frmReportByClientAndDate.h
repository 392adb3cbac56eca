#pragma once

#include <QDate>
#include <QDialog>

class QGroupBox;
class QRadioButton;
class ReportDatesFrame;

// Asks which clients and which range of dates a client history report covers.
class frmReportByClientAndDate : public QDialog
{
    Q_OBJECT
    Q_PROPERTY(bool OKPressed READ OKPressed)
    Q_PROPERTY(int ReportType READ ReportType WRITE setReportType)
    Q_PROPERTY(QDate StartDate READ StartDate WRITE setStartDate)
    Q_PROPERTY(QDate EndDate READ EndDate WRITE setEndDate)
    Q_PROPERTY(bool PromptForReportType READ PromptForReportType WRITE setPromptForReportType)

public:
    explicit frmReportByClientAndDate(QWidget *parent = nullptr);

    bool OKPressed() const { return m_okPressed; }
    // Selects the matching option: 0 all clients, 2 the current client, anything else the current recordset.
    int ReportType() const { return m_reportType; }
    void setReportType(int reportType);
    QDate StartDate() const { return m_startDate; }
    void setStartDate(const QDate &date);
    QDate EndDate() const { return m_endDate; }
    void setEndDate(const QDate &date);
    // False: the clients frame is disabled and every client is reported.
    bool PromptForReportType() const { return m_promptForReportType; }
    void setPromptForReportType(bool prompt);

private:
    void cmdOK_Click();

    ReportDatesFrame *m_fraDatesToReport;
    QGroupBox *m_fraClientsToReport;
    QRadioButton *m_optAllClients;
    QRadioButton *m_optCurrentRecordset;
    QRadioButton *m_optCurrentClient;
    int m_reportType = 0;
    QDate m_startDate;
    QDate m_endDate;
    bool m_promptForReportType = true;
    bool m_okPressed = false;
};
