#include "frmReportByClientAndDate.h"

#include "ReportDatesFrame.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

frmReportByClientAndDate::frmReportByClientAndDate(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmReportByClientAndDate"));
    setWindowTitle(tr("Select Clients and Dates To Report"));
    setModal(true);
    m_fraDatesToReport = new ReportDatesFrame(this);
    m_fraClientsToReport = new QGroupBox(tr("Clients To Report"), this);
    m_fraClientsToReport->setObjectName(QStringLiteral("fraClientsToReport"));
    m_optAllClients = new QRadioButton(tr("&All clients"), m_fraClientsToReport);
    m_optAllClients->setObjectName(QStringLiteral("optAllClients"));
    m_optCurrentRecordset = new QRadioButton(tr("Current &recordset"), m_fraClientsToReport);
    m_optCurrentRecordset->setObjectName(QStringLiteral("optCurrentRecordset"));
    m_optCurrentClient = new QRadioButton(tr("Current &client"), m_fraClientsToReport);
    m_optCurrentClient->setObjectName(QStringLiteral("optCurrentClient"));
    auto *frame = new QVBoxLayout(m_fraClientsToReport);
    frame->addWidget(m_optAllClients);
    frame->addWidget(m_optCurrentRecordset);
    frame->addWidget(m_optCurrentClient);

    auto *cmdOK = new QPushButton(tr("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto *cmdCancel = new QPushButton(tr("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(cmdOK, &QPushButton::clicked, this, &frmReportByClientAndDate::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    auto *options = new QVBoxLayout;
    options->addWidget(m_fraDatesToReport);
    options->addWidget(m_fraClientsToReport);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    buttons->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(options, 1);
    layout->addLayout(buttons);
    setReportType(0);
}

void frmReportByClientAndDate::setReportType(int reportType)
{
    m_reportType = reportType;
    (reportType == 0 ? m_optAllClients : reportType == 2 ? m_optCurrentClient : m_optCurrentRecordset)->setChecked(true);
}

void frmReportByClientAndDate::setStartDate(const QDate &date)
{
    m_startDate = date;
    m_fraDatesToReport->setStartDate(date);
}

void frmReportByClientAndDate::setEndDate(const QDate &date)
{
    m_endDate = date;
    m_fraDatesToReport->setEndDate(date);
}

void frmReportByClientAndDate::setPromptForReportType(bool prompt)
{
    m_promptForReportType = prompt;
    m_fraClientsToReport->setEnabled(prompt);
    if (!prompt)
        setReportType(0);
}

void frmReportByClientAndDate::cmdOK_Click()
{
    m_startDate = m_fraDatesToReport->startDate();
    m_endDate = m_fraDatesToReport->endDate();
    m_reportType = m_optAllClients->isChecked() ? 0 : m_optCurrentRecordset->isChecked() ? 1 : 2;
    m_okPressed = true;
    accept();
}
