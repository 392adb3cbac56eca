#include "MdiChild.h"

#include "DataBinding.h"
#include "RecordEvents.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>

MdiChild::MdiChild(Workspace *workspace, QWidget *parent) : QWidget(parent), m_workspace(workspace)
{
    setAttribute(Qt::WA_DeleteOnClose);
    if (workspace)
        connect(workspace->recordEvents(), &RecordEvents::clientRecordsChanged, this,
                [this](const QString &clientId, const QObject *source) {
                    if (source != this)
                        refillForClient(clientId);
                });
}

void MdiChild::announceClientRecordsChanged(const QString &clientId)
{
    if (m_workspace)
        m_workspace->recordEvents()->announce(clientId, this);
}

MdiChild::~MdiChild()
{
    if (m_counted && m_workspace)
        m_workspace->childClosed(this);
}

void MdiChild::closeEvent(QCloseEvent *event)
{
    if (!queryUnload()) {
        event->ignore();
        return;
    }
    basTendmark::SaveMDIChildDimensions(this);
    event->accept();
    // Closed from inside (Escape, a failed load): the frame must not stay behind empty.
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()); sub && !sub->isHidden())
        QTimer::singleShot(0, sub, [sub] {
            if (!sub->isHidden())
                sub->close();
        });
}

void MdiChild::closeWindow()
{
    auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget());
    QMdiArea *area = sub ? sub->mdiArea() : nullptr;
    if (!area) {
        close();
        return;
    }
    if (!sub->close())
        return;
    // The window used before this one takes over, as when its frame's close box is clicked.
    const QList<QMdiSubWindow *> history = area->subWindowList(QMdiArea::ActivationHistoryOrder);
    for (auto it = history.rbegin(); it != history.rend(); ++it)
        if (*it != sub && (*it)->isVisible()) {
            area->setActiveSubWindow(*it);
            break;
        }
}

void MdiChild::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        closeWindow();
        return;
    }
    QWidget::keyPressEvent(event);
}
