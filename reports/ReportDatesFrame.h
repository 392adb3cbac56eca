#pragma once

#include <QDate>
#include <QGroupBox>

class QDateEdit;

// The "Dates To Report" frame of the dated report dialogs: a start and an end picker.
class ReportDatesFrame : public QGroupBox
{
    Q_OBJECT

public:
    explicit ReportDatesFrame(QWidget *parent = nullptr);

    // A null start date shows the first day of the current month; a null end date, today.
    void setStartDate(const QDate &date);
    void setEndDate(const QDate &date);
    QDate startDate() const;
    QDate endDate() const;

private:
    QDateEdit *m_dtpStartDate;
    QDateEdit *m_dtpEndDate;
};
