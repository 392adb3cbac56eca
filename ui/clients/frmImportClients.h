#pragma once

#include "ClientImport.h"
#include "CsvReader.h"

#include <QDialog>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QStackedWidget;
class QTableView;
class QTableWidget;
class ImportResultModel;

// Data, Import, Clients from CSV: a file chosen, its columns mapped to client
// fields, every row checked, then, once the user confirms, the good rows added
// in one go. Nothing changes in the database before that confirmation.
class frmImportClients : public QDialog
{
    Q_OBJECT

public:
    explicit frmImportClients(QWidget *parent = nullptr);

    // Reads the file and shows its columns; false (after saying why) when it cannot be imported.
    bool loadFile(const QString &path);

protected:
    void closeEvent(QCloseEvent *event) override;
    void reject() override;

private:
    QWidget *buildColumnsPage();
    QWidget *buildCheckPage();
    void cmdBrowse_Click();
    void cmdNext_Click();
    void cmdBack_Click();
    void cmdImport_Click();
    void showMapping();
    void showPreview();
    void showUnknowns();
    QList<int> mapping() const;
    void updateButtons();
    bool progress(int done, int total);
    static QString rows(int count);

    CsvReader::Table m_table;
    ClientImport::Plan m_plan;
    QList<QComboBox *> m_fieldCombos;
    bool m_importing = false;
    bool m_cancelRequested = false;
    bool m_done = false;

    QStackedWidget *m_pages;
    QLineEdit *txtFileName;
    QLabel *lblFileInfo;
    QTableWidget *grdMapping;
    QTableWidget *grdPreview;
    QLabel *lblSummary;
    QTableView *grdResults;
    ImportResultModel *m_results;
    QGroupBox *fraLookups;
    QListWidget *lstUnknown;
    QRadioButton *optAddLookups;
    QRadioButton *optLeaveEmpty;
    QProgressBar *prgImport;
    QPushButton *cmdBack;
    QPushButton *cmdNext;
    QPushButton *cmdImport;
    QPushButton *cmdCancel;
};
