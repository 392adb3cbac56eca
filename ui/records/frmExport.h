#pragma once

#include "ExportFile.h"

#include <QDialog>
#include <QList>

class MdiChild;
class QCheckBox;
class QLineEdit;
class QRadioButton;
class Workspace;

// The export dialog: which records, which file type, which file and which
// fields. The client and the volunteer dialogs differ only in their words and fields.
class frmExport : public QDialog
{
    Q_OBJECT

public:
    frmExport(Workspace *workspace, RecordScope::Kind kind, QWidget *parent);

    void cmdBrowse_Click();
    void cmdOK_Click();
    void cmdCheckAll_Click() { checkAll(true); }
    void cmdClearAll_Click() { checkAll(false); }

private:
    QString words(const char *client, const char *volunteer) const;
    // The open window of this dialog's kind the "current" options read, or none.
    MdiChild *matchingWindow() const;
    ExportFile::FileType fileType() const;
    QString suffix() const;
    void fileTypeChanged();
    void checkAll(bool checked);
    QString targetPath() const;
    bool exportFile(const ExportFile::Request &request);

    Workspace *m_workspace;
    RecordScope::Kind m_kind;
    QRadioButton *m_all = nullptr;
    QRadioButton *m_recordset = nullptr;
    QRadioButton *m_current = nullptr;
    QRadioButton *m_comma = nullptr;
    QRadioButton *m_tab = nullptr;
    QRadioButton *m_workbook = nullptr;
    QLineEdit *m_fileName = nullptr;
    QList<QCheckBox *> m_fields;
    QCheckBox *m_formulaGuard = nullptr;
};

class frmExportClient : public frmExport
{
    Q_OBJECT

public:
    frmExportClient(Workspace *workspace, QWidget *parent) : frmExport(workspace, RecordScope::Kind::Client, parent) { }
};

class frmExportVolunteer : public frmExport
{
    Q_OBJECT

public:
    frmExportVolunteer(Workspace *workspace, QWidget *parent) : frmExport(workspace, RecordScope::Kind::Volunteer, parent) { }
};
