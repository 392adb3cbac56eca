#pragma once

#include <QDialog>
#include "OptionsStore.h"

#include <QList>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class frmMain;

// The organisation's name, address and logo and the database's options: which
// client detail tabs show, and the food visit interval. Both travel with the data.
class frmOptions : public QDialog
{
    Q_OBJECT

public:
    explicit frmOptions(frmMain *main);
    ~frmOptions() override;

    bool dataChanged() const { return m_dataChanged; }

private:
    void buildControls();
    QWidget *organizationControl(const QString &column) const;
    void PopulateOrganizationControls();
    void PopulateOptionsControls();
    bool txtData_Validate(QLineEdit *box);
    bool Update();
    void cmdOk_Click();
    void cmdApply_Click();
    void cmdBrowse_Click();
    void cmdBackupFolder_Click();
    void showLogo(const QString &path);
    void setDataChanged(bool changed);
    void focusChanged(QWidget *old, QWidget *now);

    frmMain *m_main;
    QList<QLineEdit *> m_textBoxes;   // validated on leaving: name, address, city, zip, phone
    QComboBox *m_cboState = nullptr;
    QLineEdit *m_txtLogo = nullptr;
    QLabel *m_picLogo = nullptr;
    QList<std::pair<QCheckBox *, bool OptionFlags::*>> m_tabChecks;
    QSpinBox *m_spnInterval = nullptr;
    QComboBox *m_cboAgeBrackets = nullptr;
    QLineEdit *m_txtBackupFolder = nullptr;
    QSpinBox *m_spnBackupsToKeep = nullptr;
    QPushButton *m_cmdApply = nullptr;
    QPushButton *m_cmdCancel = nullptr;
    bool m_loading = false;
    bool m_validating = false;
    bool m_dataChanged = false;
};
