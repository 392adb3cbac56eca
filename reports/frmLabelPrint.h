#pragma once

#include "LabelTemplates.h"
#include "RecordScope.h"

#include <QDialog>
#include <QFont>

class LabelSheetPicture;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class UpDown;

// Print Labels: which clients, on which sheet and printer, in which font, how many
// labels each and from which label of the first sheet.
class frmLabelPrint : public QDialog
{
    Q_OBJECT

public:
    // active: the open client window's statement and current client (kind None when
    // there is none); the current-client options need it.
    explicit frmLabelPrint(const RecordScope::ActiveScope &active, QWidget *parent = nullptr);

    // The printers offered: the installed ones and, last, "PDF file".
    static QStringList printerChoices();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildControls();
    void PopulateTemplates(qint64 selectId);
    void cboLabelTemplate_Click();
    void cmdFonts_Click();
    void cmdLabelSetup_Click();
    void cmdOK_Click();
    bool PrintLabels();
    void setStartPosition(int position);
    std::optional<Labels::Template> currentTemplate() const;

    RecordScope::ActiveScope m_active;
    QList<Labels::Template> m_templates;
    QFont m_font;
    QComboBox *m_cboLabelTemplate = nullptr;
    QComboBox *m_cboPrinter = nullptr;
    QLabel *m_lblFont = nullptr;
    QRadioButton *m_optClientsToPrint[3] = {};
    QRadioButton *m_optPrintWhat[2] = {};
    QCheckBox *m_chkPrintNamesOnly = nullptr;
    QLineEdit *m_txtNumberOfCopies = nullptr;
    UpDown *m_udnNumberOfCopies = nullptr;
    QLineEdit *m_txtStartPosition = nullptr;
    UpDown *m_udnStartPosition = nullptr;
    LabelSheetPicture *m_picPreview = nullptr;
};
