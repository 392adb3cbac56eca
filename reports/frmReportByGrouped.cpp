#include "frmReportByGrouped.h"

#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

frmReportByGrouped::frmReportByGrouped(QWidget *parent) : frmReportBy(tr("Current &Recordset"), parent)
{
    setObjectName(QStringLiteral("frmReportByGrouped"));
    auto *fraGroupBy = new QGroupBox(tr("Group By"), this);
    fraGroupBy->setObjectName(QStringLiteral("fraGroupBy"));
    m_optGroupByNone = new QRadioButton(tr("Do Not &Group"), fraGroupBy);
    m_optGroupByNone->setObjectName(QStringLiteral("optGroupByNone"));
    m_optGroupByZipCode = new QRadioButton(tr("&Zip Code"), fraGroupBy);
    m_optGroupByZipCode->setObjectName(QStringLiteral("optGroupByZipCode"));
    m_optGroupByCity = new QRadioButton(tr("C&ity"), fraGroupBy);
    m_optGroupByCity->setObjectName(QStringLiteral("optGroupByCity"));
    auto *frame = new QVBoxLayout(fraGroupBy);
    frame->addWidget(m_optGroupByNone);
    frame->addWidget(m_optGroupByZipCode);
    frame->addWidget(m_optGroupByCity);
    optionsLayout()->addWidget(fraGroupBy);
    setGroupBy(0);
}

void frmReportByGrouped::setGroupBy(int groupBy)
{
    m_groupBy = groupBy;
    (groupBy == 0 ? m_optGroupByNone : groupBy == 1 ? m_optGroupByCity : m_optGroupByZipCode)->setChecked(true);
}

void frmReportByGrouped::storeChoices()
{
    frmReportBy::storeChoices();
    m_groupBy = m_optGroupByNone->isChecked() ? 0 : m_optGroupByCity->isChecked() ? 1 : 2;
}
