#include "ReportDatesFrame.h"

#include <QDateEdit>
#include <QFormLayout>
#include <QLabel>

namespace {

QDateEdit *datePicker(const QString &name, QWidget *parent)
{
    auto *picker = new QDateEdit(parent);
    picker->setObjectName(name);
    picker->setCalendarPopup(true);
    picker->setDisplayFormat(QStringLiteral("MM/dd/yyyy"));
    return picker;
}

}   // namespace

ReportDatesFrame::ReportDatesFrame(QWidget *parent) : QGroupBox(tr("Dates To Report"), parent)
{
    setObjectName(QStringLiteral("fraDatesToReport"));
    m_dtpStartDate = datePicker(QStringLiteral("dtpStartDate"), this);
    m_dtpEndDate = datePicker(QStringLiteral("dtpEndDate"), this);
    auto *lblStartDate = new QLabel(tr("Start Date:"), this);
    lblStartDate->setObjectName(QStringLiteral("lblStartDate"));
    lblStartDate->setBuddy(m_dtpStartDate);
    auto *lblEndDate = new QLabel(tr("End Date:"), this);
    lblEndDate->setObjectName(QStringLiteral("lblEndDate"));
    lblEndDate->setBuddy(m_dtpEndDate);
    auto *layout = new QFormLayout(this);
    layout->addRow(lblStartDate, m_dtpStartDate);
    layout->addRow(lblEndDate, m_dtpEndDate);
    setStartDate({});
    setEndDate({});
}

void ReportDatesFrame::setStartDate(const QDate &date)
{
    const QDate today = QDate::currentDate();
    m_dtpStartDate->setDate(date.isValid() ? date : QDate(today.year(), today.month(), 1));
}

void ReportDatesFrame::setEndDate(const QDate &date)
{
    m_dtpEndDate->setDate(date.isValid() ? date : QDate::currentDate());
}

QDate ReportDatesFrame::startDate() const
{
    return m_dtpStartDate->date();
}

QDate ReportDatesFrame::endDate() const
{
    return m_dtpEndDate->date();
}
