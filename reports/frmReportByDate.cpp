#include "frmReportByDate.h"

#include "ReportDatesFrame.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

frmReportByDate::frmReportByDate(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmReportByDate"));
    setWindowTitle(tr("Select Report Date"));
    setModal(true);
    m_fraDatesToReport = new ReportDatesFrame(this);
    auto *cmdOK = new QPushButton(tr("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto *cmdCancel = new QPushButton(tr("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(cmdOK, &QPushButton::clicked, this, &frmReportByDate::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    buttons->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(m_fraDatesToReport, 1);
    layout->addLayout(buttons);
}

void frmReportByDate::setStartDate(const QDate &date)
{
    m_startDate = date;
    m_fraDatesToReport->setStartDate(date);
}

void frmReportByDate::setEndDate(const QDate &date)
{
    m_endDate = date;
    m_fraDatesToReport->setEndDate(date);
}

void frmReportByDate::cmdOK_Click()
{
    m_startDate = m_fraDatesToReport->startDate();
    m_endDate = m_fraDatesToReport->endDate();
    m_okPressed = true;
    accept();
}
