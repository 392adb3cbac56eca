#pragma once

#include "LabelTemplates.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;

// Label Setup: adds, changes and deletes the label templates. Measures are inches,
// shown with two decimals; a measure left as loaded keeps its full precision.
class frmLabelSetup : public QDialog
{
    Q_OBJECT

public:
    // selectId: the template shown first (the first one when 0 or unknown).
    explicit frmLabelSetup(qint64 selectId, QWidget *parent = nullptr);

    // The template saved by OK, 0 when none was.
    qint64 savedId() const { return m_savedId; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Measure
    {
        QLineEdit *box;
        const char *column;
        const char *required;   // the message when the box is empty
        bool count;   // a whole number rather than inches
    };

    void buildControls();
    void loadTemplates(qint64 selectId);
    void cboTemplate_Click(int index);
    void PopulateControls(const Labels::Template &t);
    void cmdNew_Click();
    void cmdDelete_Click();
    void cmdOK_Click();
    bool UpdateTemplate();
    double valueOf(const Measure &m, double loaded) const;
    QLineEdit *boxFor(const QString &column) const;
    static QString format(double value, bool count);

    QList<Labels::Template> m_templates;
    Labels::Template m_loaded;
    QList<Measure> m_measures;
    QComboBox *m_cboTemplate = nullptr;
    QComboBox *m_cboPaperSize = nullptr;
    QCheckBox *m_chkSetAsDefault = nullptr;
    qint64 m_savedId = 0;
    bool m_complaining = false;
};
