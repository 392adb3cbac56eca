#pragma once

#include <QDate>
#include <QDialog>

class QLabel;
class ReportDatesFrame;

// Asks for the period of the agency report and shows the age brackets it counts in.
class frmAgencyReport : public QDialog
{
    Q_OBJECT
    Q_PROPERTY(bool OKPressed READ OKPressed)
    Q_PROPERTY(QDate StartDate READ StartDate WRITE setStartDate)
    Q_PROPERTY(QDate EndDate READ EndDate WRITE setEndDate)

public:
    explicit frmAgencyReport(QWidget *parent = nullptr);

    bool OKPressed() const { return m_okPressed; }
    QDate StartDate() const { return m_startDate; }
    void setStartDate(const QDate &date);
    QDate EndDate() const { return m_endDate; }
    void setEndDate(const QDate &date);
    // The organisation's brackets, as "0-17,18-59,60+".
    void setAgeBrackets(const QString &brackets);

private:
    void cmdOK_Click();

    ReportDatesFrame *m_fraDatesToReport;
    QLabel *m_lblAgeBrackets;
    QDate m_startDate;
    QDate m_endDate;
    bool m_okPressed = false;
};
