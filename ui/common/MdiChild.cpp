#include "MdiChild.h"

#include "DataBinding.h"
#include "frmMain.h"

#include <QCloseEvent>
#include <QKeyEvent>

MdiChild::MdiChild(frmMain *main, QWidget *parent) : QWidget(parent), m_main(main)
{
    setAttribute(Qt::WA_DeleteOnClose);
}

MdiChild::~MdiChild()
{
    if (m_counted && m_main)
        m_main->childClosed(this);
}

void MdiChild::closeEvent(QCloseEvent *event)
{
    if (!queryUnload()) {
        event->ignore();
        return;
    }
    basTendmark::SaveMDIChildDimensions(this);
    event->accept();
}

void MdiChild::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}
