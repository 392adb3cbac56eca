#pragma once

#include "frmReportBy.h"

// The list reports' dialog: which records, and how to group them.
class frmReportByGrouped : public frmReportBy
{
    Q_OBJECT
    Q_PROPERTY(int GroupBy READ GroupBy WRITE setGroupBy)

public:
    explicit frmReportByGrouped(QWidget *parent = nullptr);

    int GroupBy() const { return m_groupBy; }
    // Selects the matching option: 0 none, 1 city, anything else zip code.
    void setGroupBy(int groupBy);

protected:
    void storeChoices() override;

private:
    QRadioButton *m_optGroupByNone;
    QRadioButton *m_optGroupByZipCode;
    QRadioButton *m_optGroupByCity;
    int m_groupBy = 0;
};
