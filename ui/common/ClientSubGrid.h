#pragma once

#include "ClientRecordQueries.h"
#include "Workspace.h"

#include <QList>
#include <QWidget>

class QLabel;
class QPushButton;
class QTableView;

// One or two lists of a client's rows with Add..., Edit... and Delete buttons.
// Add and Edit open the row's editor; Delete asks and removes the row. With two
// lists (income and expenses) the buttons act on the one last used, which shows
// a highlighted frame and whose name the buttons carry.
class ClientSubGrid : public QWidget
{
    Q_OBJECT

public:
    struct Look
    {
        QString window;   // names the procedures in error reports: "frmClientDetails"
        ClientRecordQueries::Form form;
        bool buttonsBeside;   // a column of buttons right of the lists, else a row below them
        QString add, edit, remove;
        QString noun;   // in the tooltips, "family member"; none when empty
        QString deleteJoin;   // between the two columns the delete question names
    };

    ClientSubGrid(Workspace *workspace, const Look &look, QWidget *parent);

    // Adds a list of one kind of row, edited by that kind's editor; a caption puts a label above it.
    // Beside another list, noun ("income entry") and addCaption ("&Add Income...") name it on the buttons.
    QTableView *addGrid(RecordKind kind, const QString &columnSpec, const QString &caption = {}, const QString &noun = {},
                        const QString &addCaption = {});
    // Shows the rows of this client; none for an empty ID.
    void showClient(const QString &clientId);
    // Takes the client without reading its rows yet (its lists are not in view): withRows, the
    // kinds the client has rows of, answers hasRows() until fillIfLater() reads them.
    void showClientLater(const QString &clientId, const QList<ClientRecordQueries::Kind> &withRows);
    void fillIfLater();
    bool hasRows() const;

signals:
    void rowDeleted();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct List
    {
        QTableView *grid;
        RecordKind editor;
        ClientRecordQueries::Kind kind;
        QLabel *caption;
        QString noun, addCaption;
    };

    void use(int list);
    void nameButtons(const QString &noun);   // the buttons' tooltips
    void updateButtons();
    qint64 currentKey() const;
    void addRow();
    void editRow();
    void deleteRow();

    Workspace *m_workspace;
    Look m_look;
    QList<List> m_lists;
    int m_active = 0;
    QString m_clientId;
    bool m_later = false;   // the lists are empty until fillIfLater()
    bool m_laterHasRows = false;
    QWidget *m_gridArea = nullptr;
    QPushButton *cmdAdd = nullptr;
    QPushButton *cmdEdit = nullptr;
    QPushButton *cmdDelete = nullptr;
};
