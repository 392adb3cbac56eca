#include "frmClientSummary.h"

#include "ClientSubGrid.h"
#include "Prompt.h"
#include "RecordQueries.h"
#include "Recordset.h"
#include "basClient.h"
#include "basErrorHandler.h"
#include "basTendmark.h"

#include <QCoreApplication>
#include <QFontDatabase>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {
const char *const kCaption = QT_TRANSLATE_NOOP("frmClientSummary", "Client Summary");
}   // namespace

frmClientSummary::frmClientSummary(Workspace *main) : MdiChild(main)
{
    setObjectName(QStringLiteral("frmClientSummary"));
    setWindowTitle(tr(kCaption));
    m_sql = RecordQueries::clientsByName();
    m_rs = new Recordset(this);

    auto *info = new QGroupBox(tr("Client Information"), this);
    rtbClientInfo = new QTextEdit(info);
    rtbClientInfo->setObjectName(QStringLiteral("rtbClientInfo"));
    rtbClientInfo->setReadOnly(true);
    rtbClientInfo->setLineWrapMode(QTextEdit::NoWrap);
    rtbClientInfo->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    rtbClientInfo->setFixedHeight(rtbClientInfo->fontMetrics().lineSpacing() * 5 + 14);
    cmdClientAdd = new QPushButton(tr("&Add..."), info);
    cmdClientAdd->setObjectName(QStringLiteral("cmdClientAdd"));
    cmdClientAdd->setToolTip(tr("Click to add a new client."));
    cmdClientEdit = new QPushButton(tr("&Edit..."), info);
    cmdClientEdit->setObjectName(QStringLiteral("cmdClientEdit"));
    cmdClientEdit->setToolTip(tr("Click to edit the selected client's details."));
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
    grids->addWidget(buildGrid(tr("Family Members"), RecordKind::FamilyMember,
                               QCoreApplication::translate("ColumnHeadings", "Relationship,1200|Name,2220|^Age,500")),
                     5);
    grids->addWidget(buildGrid(tr("Food Service"), RecordKind::FoodService,
                               QCoreApplication::translate("ColumnHeadings", "^Date,1000|Type of Service,2330|^Bags,590")),
                     5);
    grids->addWidget(buildGrid(tr("Payment History"), RecordKind::Payment,
                               QCoreApplication::translate("ColumnHeadings", "^Date,1000|Type of Payment,2120|^Amount,800")),
                     5);

    m_strip = new NavigationStrip(this, false);
    connect(m_strip, &NavigationStrip::moveRequested, this, &frmClientSummary::navigate);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(info);
    layout->addLayout(grids, 1);
    layout->addWidget(m_strip);

    basErrorHandler::Guard(QStringLiteral("frmClientSummary.Form_Load"),
                           [&] { m_rs->open(QStringLiteral("Client"), QStringLiteral("ClientID"), m_sql); });
    DisplayClient();
    m_strip->watchKeys();
}

QWidget *frmClientSummary::buildGrid(const QString &caption, RecordKind kind, const QString &spec)
{
    auto *box = new QGroupBox(caption, this);
    const ClientSubGrid::Look look {QStringLiteral("frmClientSummary"),
                                    ClientRecordQueries::Form::Short,
                                    false,
                                    tr("Add..."),
                                    tr("Edit..."),
                                    tr("Delete"),
                                    {},
                                    QStringLiteral(" - ")};
    auto *rows = new ClientSubGrid(workspace(), look, box);
    QTableView *grid = rows->addGrid(kind, spec);
    basClient::FitColumns(grid);
    // The columns fit the grid's width: the name or type column takes what the others leave.
    grid->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    grid->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(rows, &ClientSubGrid::rowDeleted, this, [this] { announceClientRecordsChanged(m_clientId); });
    auto *layout = new QVBoxLayout(box);
    layout->addWidget(rows);
    m_grids << rows;
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
    for (ClientSubGrid *g : std::as_const(m_grids))
        g->showClient(m_clientId);
}

void frmClientSummary::DisplayRecordPosition()
{
    m_strip->showPosition(m_clientId.isEmpty() ? 0 : m_rs->absolutePosition(), m_rs->recordCount(), m_clientId);
}

void frmClientSummary::navigate(NavigationStrip::Move move)
{
    static const char *const names[] = {"cmdFirst_Click", "cmdPrevious_Click", "cmdNext_Click", "cmdLast_Click"};
    basErrorHandler::Guard(QStringLiteral("frmClientSummary.") + QLatin1String(names[int(move)]), [&] {
        if (m_rs->recordCount() == 0)
            return;
        NavigationStrip::step(*m_rs, move);
        DisplayClient();
    });
}

void frmClientSummary::setClientID(const QString &id)
{
    basErrorHandler::Guard(QStringLiteral("frmClientSummary.ClientID"), [&] {
        if (!m_rs->find(id)) {
            Prompt::message(tr("Application Error"), tr("Error retrieving record."), Prompt::Icon::Exclamation, Prompt::Ok);
            return;
        }
        DisplayClient();
    });
}

void frmClientSummary::setSQL(const QString &sql)
{
    m_sql = RecordQueries::clientsByName(sql);
    setWindowTitle(sql.isEmpty() ? tr(kCaption) : tr("%1 (Filter Applied)").arg(tr(kCaption)));
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
        m_rs->resync();
        if (!m_rs->onRow() && m_rs->recordCount() > 0)
            m_rs->moveFirst();   // the first client added to an empty list
        DisplayClient();
    });
}

int frmClientSummary::recordCount() const
{
    return m_rs->recordCount();
}
