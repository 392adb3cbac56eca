#include "frmReportBy.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

frmReportBy::frmReportBy(QWidget *parent) : frmReportBy(tr("Current &recordset"), parent) { }

frmReportBy::frmReportBy(const QString &recordsetCaption, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmReportBy"));
    setModal(true);
    m_fraToReport = new QGroupBox(this);
    m_fraToReport->setObjectName(QStringLiteral("fraToReport"));
    m_optAll = new QRadioButton(m_fraToReport);
    m_optAll->setObjectName(QStringLiteral("optAll"));
    m_optCurrentRecordset = new QRadioButton(recordsetCaption, m_fraToReport);
    m_optCurrentRecordset->setObjectName(QStringLiteral("optCurrentRecordset"));
    m_optCurrent = new QRadioButton(m_fraToReport);
    m_optCurrent->setObjectName(QStringLiteral("optCurrent"));
    auto *frame = new QVBoxLayout(m_fraToReport);
    frame->addWidget(m_optAll);
    frame->addWidget(m_optCurrentRecordset);
    frame->addWidget(m_optCurrent);

    m_cmdOK = new QPushButton(tr("OK"), this);
    m_cmdOK->setObjectName(QStringLiteral("cmdOK"));
    m_cmdOK->setDefault(true);
    m_cmdCancel = new QPushButton(tr("Cancel"), this);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(m_cmdOK, &QPushButton::clicked, this, &frmReportBy::cmdOK_Click);
    connect(m_cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    m_options = new QVBoxLayout;
    m_options->addWidget(m_fraToReport);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(m_cmdOK);
    buttons->addWidget(m_cmdCancel);
    buttons->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(m_options, 1);
    layout->addLayout(buttons);
    setReportType(0);
}

void frmReportBy::setTableName(const QString &itemWord)
{
    m_tableName = itemWord;
    PopulateControls();
}

void frmReportBy::PopulateControls()
{
    setWindowTitle(tr("Select %1s To Report").arg(m_tableName));
    m_fraToReport->setTitle(tr("%1s To Report").arg(m_tableName));
    m_optAll->setText(tr("All %1s").arg(m_tableName));
    m_optCurrent->setText(tr("Current %1").arg(m_tableName));
}

void frmReportBy::setReportType(int reportType)
{
    m_reportType = reportType;
    (reportType == 0 ? m_optAll : reportType == 1 ? m_optCurrentRecordset : m_optCurrent)->setChecked(true);
}

void frmReportBy::setCurrentEnabled(bool enabled)
{
    m_optCurrentRecordset->setEnabled(enabled);
    m_optCurrent->setEnabled(enabled);
}

void frmReportBy::storeChoices()
{
    m_reportType = m_optAll->isChecked() ? 0 : m_optCurrentRecordset->isChecked() ? 1 : 2;
}

void frmReportBy::cmdOK_Click()
{
    storeChoices();
    m_okPressed = true;
    accept();
}
