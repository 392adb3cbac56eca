#pragma once

#include <QDate>
#include <QDialog>

class ReportDatesFrame;

// Asks for the range of dates a statistical report covers.
class frmReportByDate : public QDialog
{
    Q_OBJECT
    Q_PROPERTY(bool OKPressed READ OKPressed)
    Q_PROPERTY(QDate StartDate READ StartDate WRITE setStartDate)
    Q_PROPERTY(QDate EndDate READ EndDate WRITE setEndDate)

public:
    explicit frmReportByDate(QWidget *parent = nullptr);

    bool OKPressed() const { return m_okPressed; }
    // Null dates show the first of this month and today.
    QDate StartDate() const { return m_startDate; }
    void setStartDate(const QDate &date);
    QDate EndDate() const { return m_endDate; }
    void setEndDate(const QDate &date);

private:
    void cmdOK_Click();

    ReportDatesFrame *m_fraDatesToReport;
    QDate m_startDate;
    QDate m_endDate;
    bool m_okPressed = false;
};
