#include "frmRestoreBackup.h"

#include "DatabaseSession.h"
#include "Prompt.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

frmRestoreBackup::frmRestoreBackup(DatabaseSession &session, const QString &database, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_database(database)
    , m_backups(Backups::List(database))
    , m_grid(new QTableWidget)
{
    setObjectName(QStringLiteral("frmRestoreBackup"));
    setWindowTitle(QStringLiteral("Restore From Backup"));
    setAttribute(Qt::WA_DeleteOnClose);

    m_grid->setObjectName(QStringLiteral("grdBackups"));
    m_grid->setColumnCount(3);
    m_grid->setHorizontalHeaderLabels({QStringLiteral("Taken"), QStringLiteral("Size"), QStringLiteral("Clients")});
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->verticalHeader()->hide();
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->setRowCount(int(m_backups.size()));
    const QLocale locale;
    for (int row = 0; row < int(m_backups.size()); ++row) {
        const Backups::Info &b = m_backups[row];
        const QStringList cells = {b.taken.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")), locale.formattedDataSize(b.size),
                                   b.clients < 0 ? QStringLiteral("cannot be read") : QString::number(b.clients)};
        for (int column = 0; column < 3; ++column) {
            auto *item = new QTableWidgetItem(cells[column]);
            item->setToolTip(QDir::toNativeSeparators(b.path));
            m_grid->setItem(row, column, item);
        }
    }
    m_grid->resizeColumnsToContents();
    if (!m_backups.isEmpty())
        m_grid->selectRow(0);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    QPushButton *restore = buttons->addButton(QStringLiteral("&Restore"), QDialogButtonBox::AcceptRole);
    restore->setObjectName(QStringLiteral("cmdRestore"));
    restore->setEnabled(!m_backups.isEmpty());
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        if (restoreSelected())
            accept();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    const QString name = QFileInfo(database).fileName();
    layout->addWidget(new QLabel(m_backups.isEmpty() ? QStringLiteral("There are no backups of %1 yet.").arg(name)
                                                     : QStringLiteral("Choose the copy to put back in place of %1:").arg(name)));
    layout->addWidget(m_grid);
    layout->addWidget(buttons);
    resize(460, 320);
}

bool frmRestoreBackup::restoreSelected()
{
    const int row = m_grid->currentRow();
    if (row < 0 || row >= int(m_backups.size()))
        return false;
    const QString taken = m_backups[row].taken.toString(QStringLiteral("yyyy-MM-dd hh:mm"));
    if (Prompt::message(windowTitle(),
                        QStringLiteral("Replace the database with the backup taken %1?\r\n"
                                       "A backup of the database as it is now is made first.")
                            .arg(taken),
                        Prompt::Icon::Question, Prompt::Yes | Prompt::No)
        != Prompt::Yes)
        return false;
    return m_session.restore(m_backups[row].path, m_database);
}
