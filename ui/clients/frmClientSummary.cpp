#include "frmClientSummary.h"

#include "DataBinding.h"
#include "GridModel.h"
#include "Prompt.h"
#include "Recordset.h"
#include "SqlText.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basTendmark.h"

#include <QApplication>
#include <QFontDatabase>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {
const QString kDefaultSql = QStringLiteral("SELECT * FROM Client ORDER BY LastName");
const QString kCaption = QStringLiteral("Client Summary");
} // namespace

frmClientSummary::frmClientSummary(Workspace *main) : MdiChild(main)
{
    setObjectName(QStringLiteral("frmClientSummary"));
    setWindowTitle(kCaption);
    m_sql = kDefaultSql;
    m_rs = new Recordset(this);

    auto *info = new QGroupBox(QStringLiteral("Client Information"), this);
    rtbClientInfo = new QTextEdit(info);
    rtbClientInfo->setObjectName(QStringLiteral("rtbClientInfo"));
    rtbClientInfo->setReadOnly(true);
    rtbClientInfo->setLineWrapMode(QTextEdit::NoWrap);
    rtbClientInfo->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    rtbClientInfo->setFixedHeight(rtbClientInfo->fontMetrics().lineSpacing() * 5 + 14);
    cmdClientAdd = new QPushButton(QStringLiteral("&Add..."), info);
    cmdClientAdd->setObjectName(QStringLiteral("cmdClientAdd"));
    cmdClientAdd->setToolTip(QStringLiteral("Click to add a new client."));
    cmdClientEdit = new QPushButton(QStringLiteral("&Edit..."), info);
    cmdClientEdit->setObjectName(QStringLiteral("cmdClientEdit"));
    cmdClientEdit->setToolTip(QStringLiteral("Click to edit the selected client's details."));
    auto *clientButtons = new QVBoxLayout;
    clientButtons->addWidget(cmdClientAdd);
    clientButtons->addWidget(cmdClientEdit);
    clientButtons->addStretch(1);
    auto *infoLayout = new QHBoxLayout(info);
    infoLayout->addWidget(rtbClientInfo, 1);
    infoLayout->addLayout(clientButtons);
    connect(cmdClientAdd, &QPushButton::clicked, this, [this] {
        basErrorHandler::Guard(QStringLiteral("frmClientSummary.cmdClientAdd_Click"),
                               [&] { basClient::OpenDetails(workspace(), QStringLiteral("ADD")); });
    });
    connect(cmdClientEdit, &QPushButton::clicked, this, [this] {
        basErrorHandler::Guard(QStringLiteral("frmClientSummary.cmdClientEdit_Click"), [&] {
            if (!m_clientId.isEmpty())
                basClient::OpenDetails(workspace(), m_clientId);
        });
    });

    auto *grids = new QHBoxLayout;
    grids->addWidget(buildGrid(0, QStringLiteral("Family Members"), QStringLiteral("Relationship,1200|Name,2220|^Age,500"),
                               QStringLiteral("Family"), QStringLiteral("FamilyMemberID"), RecordKind::FamilyMember,
                               QStringLiteral("SELECT Family.FamilyMemberID, Relationships.RelationshipDescription, ")
                                   + SqlText::fullName(QStringLiteral("Family")) + QStringLiteral(" AS FullName, ")
                                   + SqlText::yearsSince(QStringLiteral("Family.BirthDate"))
                                   + QStringLiteral(" AS Age FROM Family LEFT JOIN Relationships ON "
                                                    "Family.RelationshipID=Relationships.RelationshipID WHERE Family.ClientID = ? "
                                                    "ORDER BY Family.FamilyMemberID")),
                     5);
    grids->addWidget(buildGrid(1, QStringLiteral("Food Service"), QStringLiteral("^Date,1000|Type of Service,2330|^Bags,590"),
                               QStringLiteral("FoodService"), QStringLiteral("FoodServiceID"), RecordKind::FoodService,
                               QStringLiteral("SELECT FoodService.FoodServiceID, ") + SqlText::date(QStringLiteral("FoodService.FoodServiceDate"))
                                   + QStringLiteral(" AS FoodServiceDate, FoodServiceTypes.FoodServiceTypeDescription, "
                                                    "FoodService.NumberOfBags FROM FoodService LEFT JOIN FoodServiceTypes ON "
                                                    "FoodService.FoodServiceTypeID=FoodServiceTypes.FoodServiceTypeID WHERE "
                                                    "FoodService.ClientID = ? ORDER BY FoodService.FoodServiceDate, FoodService.FoodServiceID")),
                     5);
    grids->addWidget(buildGrid(2, QStringLiteral("Payment History"), QStringLiteral("^Date,1000|Type of Payment,2120|^Amount,800"),
                               QStringLiteral("Payments"), QStringLiteral("PaymentID"), RecordKind::Payment,
                               QStringLiteral("SELECT Payments.PaymentID, ") + SqlText::date(QStringLiteral("Payments.PaymentDate"))
                                   + QStringLiteral(" AS PaymentDate, PaymentTypes.PaymentTypeDescription, ")
                                   + SqlText::currency(QStringLiteral("Payments.AmountPaid"))
                                   + QStringLiteral(" AS AmountPaid FROM Payments LEFT JOIN PaymentTypes ON "
                                                    "Payments.PaymentsTypeID=PaymentTypes.PaymentTypeID WHERE Payments.ClientID = ? "
                                                    "ORDER BY Payments.PaymentDate, Payments.PaymentID")),
                     5);

    auto nav = [this](const char *name, const QString &caption, const QString &tip) {
        auto *b = new QPushButton(caption, this);
        b->setObjectName(QString::fromLatin1(name));
        b->setToolTip(tip);
        b->setFixedWidth(b->fontMetrics().horizontalAdvance(QStringLiteral(">|")) + 24);
        return b;
    };
    cmdFirst = nav("cmdFirst", QStringLiteral("|<"), QStringLiteral("Go to the first record."));
    cmdPrevious = nav("cmdPrevious", QStringLiteral("<"), QStringLiteral("Go to the previous record."));
    cmdNext = nav("cmdNext", QStringLiteral(">"), QStringLiteral("Go to the next record."));
    cmdLast = nav("cmdLast", QStringLiteral(">|"), QStringLiteral("Go to the last record."));
    lblStatus = new QLabel(this);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->setToolTip(QStringLiteral("Displays the record number, the total number of records, and the current record id."));
    lblStatus->setAlignment(Qt::AlignCenter);
    lblStatus->setFrameShape(QFrame::StyledPanel);
    lblStatus->setMinimumWidth(lblStatus->fontMetrics().horizontalAdvance(QStringLiteral("Record: 100000 of 100000     ID: 100000")) + 16);
    auto *strip = new QHBoxLayout;
    for (QWidget *w : std::initializer_list<QWidget *>{cmdFirst, cmdPrevious, lblStatus, cmdNext, cmdLast})
        strip->addWidget(w);
    strip->addStretch(1);
    connect(cmdFirst, &QPushButton::clicked, this, [this] { navigate(NavigationKeys::Move::First); });
    connect(cmdPrevious, &QPushButton::clicked, this, [this] { navigate(NavigationKeys::Move::Previous); });
    connect(cmdNext, &QPushButton::clicked, this, [this] { navigate(NavigationKeys::Move::Next); });
    connect(cmdLast, &QPushButton::clicked, this, [this] { navigate(NavigationKeys::Move::Last); });

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(info);
    layout->addLayout(grids, 1);
    layout->addLayout(strip);

    basErrorHandler::Guard(QStringLiteral("frmClientSummary.Form_Load"), [&] {
        m_rs->open(QStringLiteral("Client"), QStringLiteral("ClientID"), m_sql);
    });
    DisplayClient();
    auto *keys = new NavigationKeys(this, [this](NavigationKeys::Move m) { navigate(m); });
    keys->watchChildren();
}

QWidget *frmClientSummary::buildGrid(int index, const QString &caption, const QString &spec, const QString &table,
                                     const QString &keyColumn, RecordKind editor, const QString &sql)
{
    auto *box = new QGroupBox(caption, this);
    auto *grid = new QTableView(box);
    grid->setObjectName(QStringLiteral("grdData"));
    grid->setProperty("ColumnSpec", spec);
    grid->setProperty("Index", index);
    basTendmark::FormatDataGrid(grid);
    basClient::FitColumns(grid);
    // The columns fit the grid's width: the name or type column takes what the others leave.
    grid->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    grid->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    SubGrid g{grid, table, keyColumn, editor, sql};
    auto button = [box, index](const char *name, const QString &text) {
        auto *b = new QPushButton(text, box);
        b->setObjectName(QString::fromLatin1(name));
        b->setProperty("Index", index);
        return b;
    };
    g.add = button("cmdGridDataAdd", QStringLiteral("Add..."));
    g.edit = button("cmdGridDataEdit", QStringLiteral("Edit..."));
    g.remove = button("cmdGridDataDelete", QStringLiteral("Delete"));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(g.add);
    buttons->addWidget(g.edit);
    buttons->addWidget(g.remove);
    buttons->addStretch(1);
    auto *layout = new QVBoxLayout(box);
    layout->addWidget(grid, 1);
    layout->addLayout(buttons);
    connect(g.add, &QPushButton::clicked, this, [this, index] { cmdGridDataAdd_Click(index); });
    connect(g.edit, &QPushButton::clicked, this, [this, index] { cmdGridDataEdit_Click(index); });
    connect(g.remove, &QPushButton::clicked, this, [this, index] { cmdGridDataDelete_Click(index); });
    connect(grid, &QTableView::pressed, this, [this, index](const QModelIndex &i) {
        const bool onRow = basTendmark::GridRowKey(m_grids[index].grid, i.row()) > 0;
        m_grids[index].edit->setEnabled(onRow);
        m_grids[index].remove->setEnabled(onRow);
    });
    connect(grid, &QTableView::doubleClicked, this, [this, index](const QModelIndex &i) {
        if (i.isValid())
            cmdGridDataEdit_Click(index);
    });
    m_grids << g;
    return box;
}

void frmClientSummary::PopulateClient()
{
    if (m_clientId.isEmpty()) {
        rtbClientInfo->clear();
        cmdClientEdit->setEnabled(false);
        return;
    }
    auto v = [this](const char *column) { return m_rs->value(QString::fromLatin1(column)).toString(); };
    const QString name = v("LastName") + QStringLiteral(", ") + v("FirstName") + QLatin1Char(' ') + v("MiddleInitial");
    const QStringList lines = {
        name.leftJustified(40, QLatin1Char(' ')) + basTendmark::FormatSSN(v("SocialSecurityNumber")),
        v("Address"),
        v("City") + QStringLiteral(", ") + v("State") + QStringLiteral("  ") + v("ZipCode"),
        basTendmark::FormatPhone(v("HomePhone")),
    };
    rtbClientInfo->setPlainText(lines.join(QLatin1Char('\n')));
    cmdClientEdit->setEnabled(true);
}

void frmClientSummary::DisplayClient()
{
    basErrorHandler::Guard(QStringLiteral("frmClientSummary.DisplayClient"), [&] {
        m_clientId = m_rs->onRow() ? m_rs->key().toString() : QString();
        PopulateClient();
        PopulateGrids();
        DisplayRecordPosition();
    });
    Q_EMIT commandsChanged();
}

void frmClientSummary::PopulateGrids()
{
    for (const SubGrid &g : m_grids) {
        if (m_clientId.isEmpty())
            basTendmark::PopulateDataGrid(g.grid, {});
        else
            basTendmark::PopulateDataGrid(g.grid, g.sql, {m_clientId.toLongLong()});
    }
    DisableButtons();
}

void frmClientSummary::DisableButtons()
{
    for (const SubGrid &g : m_grids) {
        g.grid->selectionModel()->clear();
        g.add->setEnabled(!m_clientId.isEmpty());
        g.edit->setEnabled(false);
        g.remove->setEnabled(false);
    }
}

void frmClientSummary::DisplayRecordPosition()
{
    const int count = m_rs->recordCount();
    const int position = m_rs->absolutePosition();
    if (m_clientId.isEmpty() || position <= 0)
        lblStatus->setText(QStringLiteral("Record: 0 of %1").arg(count));
    else
        lblStatus->setText(QStringLiteral("Record: %1 of %2     ID: %3").arg(position).arg(count).arg(m_clientId));
    cmdFirst->setEnabled(count > 0 && position != 1);
    cmdPrevious->setEnabled(count > 0 && position != 1);
    cmdNext->setEnabled(count > 0 && position < count);
    cmdLast->setEnabled(count > 0 && position != count);
}

void frmClientSummary::navigate(NavigationKeys::Move move)
{
    static const char *const names[] = {"cmdFirst_Click", "cmdPrevious_Click", "cmdNext_Click", "cmdLast_Click"};
    basErrorHandler::Guard(QStringLiteral("frmClientSummary.") + QLatin1String(names[int(move)]), [&] {
        if (m_rs->recordCount() == 0)
            return;
        basClient::MoveRecordset(*m_rs, move);
        DisplayClient();
    });
}

void frmClientSummary::setClientID(const QString &id)
{
    basErrorHandler::Guard(QStringLiteral("frmClientSummary.ClientID"), [&] {
        if (!m_rs->find(id)) {
            Prompt::message(QStringLiteral("Application Error"), QStringLiteral("Error retrieving record."), Prompt::Icon::Exclamation,
                            Prompt::Ok);
            return;
        }
        DisplayClient();
    });
}

void frmClientSummary::setSQL(const QString &sql)
{
    m_sql = sql.isEmpty() ? kDefaultSql : sql;
    setWindowTitle(sql.isEmpty() ? kCaption : kCaption + QStringLiteral(" (Filter Applied)"));
}

void frmClientSummary::ExecuteSQL()
{
    basErrorHandler::Guard(QStringLiteral("frmClientSummary.ExecuteSQL"), [&] {
        m_rs->open(QStringLiteral("Client"), QStringLiteral("ClientID"), m_sql);
        DisplayClient();
        if (m_rs->recordCount() == 0)
            basClient::TellNoClientRecordsFound();
    });
}

void frmClientSummary::DeleteCurrentRecord()
{
    if (m_clientId.isEmpty())
        return;
    const QString deleted = m_clientId;
    basErrorHandler::Guard(QStringLiteral("frmClientSummary.DeleteCurrentRecord"), [&] {
        auto v = [this](const char *column) { return m_rs->value(QString::fromLatin1(column)).toString(); };
        const QString name = basClient::DeleteName(v("LastName"), v("FirstName"), v("MiddleInitial"), false);
        if (!basClient::DeleteClient(*m_rs, m_clientId, name))
            return;
        DisplayClient();
        announceClientRecordsChanged(deleted);
    });
}

MdiChild::Commands frmClientSummary::commands() const
{
    Commands c;
    c.del = !m_clientId.isEmpty();
    c.filter = true;
    c.searchBar = true;
    return c;
}

void frmClientSummary::refillForClient(const QString &)
{
    basErrorHandler::Guard(QStringLiteral("frmClientSummary.Form_Activate"), [&] {
        const QString id = m_clientId;
        const int position = m_rs->absolutePosition();
        m_rs->requery();
        if (!m_rs->find(id) && m_rs->recordCount() > 0)
            m_rs->moveTo(qBound(1, position, m_rs->recordCount()));
        DisplayClient();
    });
}

void frmClientSummary::cmdGridDataAdd_Click(int index)
{
    if (!m_clientId.isEmpty())
        workspace()->openRecordEditor(m_grids[index].editor, m_clientId, {});
}

void frmClientSummary::cmdGridDataEdit_Click(int index)
{
    const SubGrid &g = m_grids[index];
    const qint64 key = basTendmark::GridRowKey(g.grid, g.grid->currentIndex().row());
    if (key > 0 && !m_clientId.isEmpty())
        workspace()->openRecordEditor(g.editor, m_clientId, QString::number(key));
}

void frmClientSummary::cmdGridDataDelete_Click(int index)
{
    basErrorHandler::Guard(QStringLiteral("frmClientSummary.cmdGridDataDelete_Click"), [&] {
        const SubGrid &g = m_grids[index];
        const int row = g.grid->currentIndex().row();
        const qint64 key = basTendmark::GridRowKey(g.grid, row);
        if (key <= 0)
            return;
        const QString what = basTendmark::GridText(g.grid, row, 1) + QStringLiteral(" - ") + basTendmark::GridText(g.grid, row, 2);
        if (Prompt::message(QStringLiteral("Delete Record?"), QStringLiteral("Are you sure you want to delete '") + what + QStringLiteral("'?"),
                            Prompt::Icon::Question, Prompt::Yes | Prompt::No)
            != Prompt::Yes)
            return;
        if (!basDatabase::DeleteItemFromTable(g.table, g.keyColumn, QString::number(key)))
            return;
        basTendmark::RemoveGridRow(g.grid, row);
        g.grid->selectionModel()->clear();
        g.edit->setEnabled(false);
        g.remove->setEnabled(false);
        announceClientRecordsChanged(m_clientId);
    });
}
