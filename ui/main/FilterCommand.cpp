#include "FilterCommand.h"

#include "MdiChild.h"
#include "basDatabase.h"
#include "basErrorHandler.h"

#include <QAction>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>

namespace {

QString tableOf(const MdiChild *child)
{
    if (!child || !child->hasSQL())
        return {};
    switch (child->kind()) {
    case MdiChild::Kind::Client:
        return QStringLiteral("Client");
    case MdiChild::Kind::Volunteer:
        return QStringLiteral("Volunteer");
    case MdiChild::Kind::Other:
        break;
    }
    return {};
}

// Counts with the user's digit grouping, or as in English when the locale has none.
QString grouped(qint64 n)
{
    QLocale locale;
    if (locale.language() == QLocale::C)
        locale = QLocale(QLocale::English, QLocale::UnitedStates);
    return locale.toString(n);
}

}   // namespace

FilterCommand::FilterCommand(Workspace *workspace, QStatusBar *statusBar, QMenu *viewMenu) : QObject(statusBar), m_workspace(workspace)
{
    lblFilter = new QLabel(statusBar);
    lblFilter->setObjectName(QStringLiteral("lblFilter"));
    cmdRemoveFilter = new QPushButton(tr("Remove Filter"), statusBar);
    cmdRemoveFilter->setObjectName(QStringLiteral("cmdRemoveFilter"));
    cmdRemoveFilter->setFlat(true);
    cmdRemoveFilter->setToolTip(tr("Show every record again"));
    statusBar->addPermanentWidget(lblFilter);
    statusBar->addPermanentWidget(cmdRemoveFilter);
    connect(cmdRemoveFilter, &QPushButton::clicked, this, &FilterCommand::removeFilter);
    viewMenu->addSeparator();
    mnuViewRemoveFilter = viewMenu->addAction(tr("&Remove Filter"));
    mnuViewRemoveFilter->setObjectName(QStringLiteral("mnuViewRemoveFilter"));
    connect(mnuViewRemoveFilter, &QAction::triggered, this, &FilterCommand::removeFilter);
    showStatus();
}

void FilterCommand::run()
{
    MdiChild *child = m_workspace->activeChild();
    const QString table = tableOf(child);
    if (table.isEmpty() || m_dialog)
        return;
    m_dialog = new frmFilter(m_workspace->frame());
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setTableName(table);
    if (m_saved.contains(child))
        m_dialog->setState(m_saved.value(child).state);
    QPointer<MdiChild> target(child);
    connect(m_dialog, &QDialog::finished, this, [this, target] {
        frmFilter *dialog = m_dialog;
        m_dialog = nullptr;
        if (!dialog->OKPressed() || !target)
            return;
        if (!m_saved.contains(target.data()))
            connect(target.data(), &QObject::destroyed, this, [this](QObject *gone) { m_saved.remove(gone); });
        m_saved[target.data()].state = dialog->state();
        apply(target.data(), dialog->SQL());
    });
    m_dialog->open();
}

void FilterCommand::apply(MdiChild *child, const QString &sql)
{
    if (!child->leaveCurrentRecord())
        return;
    m_saved[child].filtered = !sql.isEmpty();
    child->setSQL(sql);
    child->ExecuteSQL();
    showStatus();
}

void FilterCommand::removeFilter()
{
    if (MdiChild *child = m_workspace->activeChild(); child && m_saved.value(child).filtered)
        apply(child, QString());
}

void FilterCommand::showStatus()
{
    MdiChild *child = m_workspace->activeChild();
    const QString table = tableOf(child);
    const bool filtered = !table.isEmpty() && m_saved.value(child).filtered;
    if (filtered) {
        qint64 total = 0;
        basErrorHandler::Guard(QStringLiteral("frmMain.ShowFilterStatus"),
                               [&] { total = basDatabase::ScalarValue(QStringLiteral("SELECT COUNT(*) FROM ") + table).toLongLong(); });
        const QString shown = grouped(qMax(0, child->recordCount()));
        lblFilter->setText(table == QLatin1String("Volunteer") ? tr("Filtered: %1 of %2 volunteers").arg(shown, grouped(total))
                                                               : tr("Filtered: %1 of %2 clients").arg(shown, grouped(total)));
    }
    lblFilter->setVisible(filtered);
    cmdRemoveFilter->setVisible(filtered);
    mnuViewRemoveFilter->setEnabled(filtered);
}
