#include "frmAgencyReport.h"

#include "ReportDatesFrame.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmAgencyReport::frmAgencyReport(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAgencyReport"));
    setWindowTitle(tr("Agency Report"));
    setModal(true);
    m_fraDatesToReport = new ReportDatesFrame(this);
    auto *lblMonthly = new QLabel(tr("A period of more than one month is reported month by month."), this);
    lblMonthly->setObjectName(QStringLiteral("lblMonthByMonth"));
    lblMonthly->setWordWrap(true);

    auto *fraAgeBrackets = new QGroupBox(tr("Age Brackets"), this);
    fraAgeBrackets->setObjectName(QStringLiteral("fraAgeBrackets"));
    m_lblAgeBrackets = new QLabel(fraAgeBrackets);
    m_lblAgeBrackets->setObjectName(QStringLiteral("lblAgeBrackets"));
    auto *lblChange = new QLabel(tr("Set under Tools, Options."), fraAgeBrackets);
    lblChange->setObjectName(QStringLiteral("lblAgeBracketsWhere"));
    auto *brackets = new QVBoxLayout(fraAgeBrackets);
    brackets->addWidget(m_lblAgeBrackets);
    brackets->addWidget(lblChange);

    auto *cmdOK = new QPushButton(tr("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto *cmdCancel = new QPushButton(tr("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(cmdOK, &QPushButton::clicked, this, &frmAgencyReport::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    buttons->addStretch();
    auto *fields = new QVBoxLayout;
    fields->addWidget(m_fraDatesToReport);
    fields->addWidget(lblMonthly);
    fields->addWidget(fraAgeBrackets);
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(fields, 1);
    layout->addLayout(buttons);
}

void frmAgencyReport::setStartDate(const QDate &date)
{
    m_startDate = date;
    m_fraDatesToReport->setStartDate(date);
}

void frmAgencyReport::setEndDate(const QDate &date)
{
    m_endDate = date;
    m_fraDatesToReport->setEndDate(date);
}

void frmAgencyReport::setAgeBrackets(const QString &brackets)
{
    m_lblAgeBrackets->setText(brackets);
}

void frmAgencyReport::cmdOK_Click()
{
    m_startDate = m_fraDatesToReport->startDate();
    m_endDate = m_fraDatesToReport->endDate();
    m_okPressed = true;
    accept();
}
