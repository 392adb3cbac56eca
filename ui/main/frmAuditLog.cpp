#include "frmAuditLog.h"

#include "AuditLog.h"
#include "Prompt.h"
#include "basDatabase.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

template<typename T> T *named(T *widget, const char *name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

}   // namespace

frmAuditLog::frmAuditLog(Workspace *workspace, QWidget *parent)
    : MdiChild(workspace, parent)
    , m_client(named(new QLineEdit, "txtClientID"))
    , m_table(named(new QComboBox, "cboTable"))
    , m_user(named(new QLineEdit, "txtUser"))
    , m_useSince(named(new QCheckBox(tr("Since")), "chkSince"))
    , m_since(named(new QDateEdit(QDate::currentDate().addMonths(-1)), "dtpSince"))
    , m_useUntil(named(new QCheckBox(tr("Until")), "chkUntil"))
    , m_until(named(new QDateEdit(QDate::currentDate()), "dtpUntil"))
    , m_grid(named(new QTableWidget, "grdAuditLog"))
    , m_count(named(new QLabel, "lblCount"))
{
    setObjectName(QStringLiteral("frmAuditLog"));
    setWindowTitle(tr("Audit Log"));
    m_client->setValidator(new QIntValidator(1, 2147483647, m_client));
    m_client->setPlaceholderText(tr("every client"));
    m_user->setPlaceholderText(tr("every user"));
    m_table->addItem(tr("(All)"));
    m_table->addItems(AuditLog::AuditedTables());
    for (QDateEdit *date : {m_since, m_until}) {
        date->setCalendarPopup(true);
        date->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        date->setEnabled(false);
    }

    auto *filters = new QHBoxLayout;
    const auto add = [filters](const QString &caption, QWidget *w) {
        if (!caption.isEmpty())
            filters->addWidget(new QLabel(caption));
        filters->addWidget(w);
    };
    add(tr("Client ID:"), m_client);
    add(tr("Table:"), m_table);
    add(tr("User:"), m_user);
    add({}, m_useSince);
    add({}, m_since);
    add({}, m_useUntil);
    add({}, m_until);
    auto *refresh = named(new QPushButton(tr("&Refresh")), "cmdRefresh");
    filters->addWidget(refresh);
    filters->addStretch();

    const QStringList headers = {tr("Time"), tr("User"), tr("Table"), tr("Key"), tr("Change"), tr("Old Values"), tr("New Values")};
    m_grid->setColumnCount(int(headers.size()));
    m_grid->setHorizontalHeaderLabels(headers);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->verticalHeader()->hide();
    m_grid->horizontalHeader()->setStretchLastSection(true);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(filters);
    layout->addWidget(m_grid);
    layout->addWidget(m_count);
    resize(900, 420);

    connect(refresh, &QPushButton::clicked, this, &frmAuditLog::refill);
    connect(m_client, &QLineEdit::editingFinished, this, &frmAuditLog::refill);
    connect(m_user, &QLineEdit::editingFinished, this, &frmAuditLog::refill);
    connect(m_table, &QComboBox::currentIndexChanged, this, &frmAuditLog::refill);
    for (auto [use, date] : {std::pair {m_useSince, m_since}, std::pair {m_useUntil, m_until}}) {
        connect(use, &QCheckBox::toggled, this, [this, date](bool on) {
            date->setEnabled(on);
            refill();
        });
        connect(date, &QDateEdit::dateChanged, this, &frmAuditLog::refill);
    }
    refill();
}

void frmAuditLog::refill()
{
    AuditLog::Filter filter;
    filter.clientId = m_client->text().toLongLong();
    filter.table = m_table->currentIndex() > 0 ? m_table->currentText() : QString();
    filter.user = m_user->text().trimmed();
    if (m_useSince->isChecked())
        filter.since = m_since->date();
    if (m_useUntil->isChecked())
        filter.until = m_until->date();
    QList<AuditLog::Entry> entries;
    QString error;
    if (!AuditLog::Read(basDatabase::Connection(), filter, &entries, &error)) {
        Prompt::message(tr("Audit Log"), tr("The audit log could not be read.\r\n%1").arg(error), Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    m_grid->setRowCount(int(entries.size()));
    for (int row = 0; row < int(entries.size()); ++row) {
        const AuditLog::Entry &e = entries[row];
        const QStringList cells = {e.time, e.user, e.table, QString::number(e.key), e.operation, e.oldValues, e.newValues};
        for (int column = 0; column < int(cells.size()); ++column) {
            auto *item = new QTableWidgetItem(cells[column]);
            item->setToolTip(AuditLog::Describe(e));
            m_grid->setItem(row, column, item);
        }
    }
    m_grid->resizeColumnsToContents();
    for (const int values : {5, 6})   // long rows stay readable; the tooltip holds the whole change
        m_grid->setColumnWidth(values, qMin(m_grid->columnWidth(values), 320));
    m_count->setText(tr("%1 changes").arg(entries.size()));
}
