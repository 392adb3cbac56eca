#include "frmMessage.h"

#include <QApplication>
#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>

frmMessage::frmMessage(QWidget *parent) : QWidget(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmMessage"));
    setWindowModality(Qt::ApplicationModal);
    auto *frame = new QFrame(this);
    frame->setFrameShape(QFrame::Box);
    frame->setStyleSheet(QStringLiteral("QFrame { background: palette(base); border: 1px solid palette(mid); border-radius: 6px; }"
                                        "QLabel { border: none; }"));
    m_lblMessage = new QLabel(frame);
    m_lblMessage->setObjectName(QStringLiteral("lblMessage"));
    m_lblMessage->setAlignment(Qt::AlignCenter);
    m_lblMessage->setWordWrap(true);
    QFont f = m_lblMessage->font();
    f.setPointSizeF(f.pointSizeF() * 1.15);
    m_lblMessage->setFont(f);
    auto *inner = new QVBoxLayout(frame);
    inner->setContentsMargins(28, 22, 28, 22);
    inner->addWidget(m_lblMessage);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(frame);
    setMinimumWidth(360);
}

void frmMessage::setMessage(const QString &text)
{
    m_lblMessage->setText(text);
}

QString frmMessage::Message() const
{
    return m_lblMessage->text();
}

void frmMessage::showNow()
{
    adjustSize();
    if (QWidget *owner = parentWidget() ? parentWidget()->window() : nullptr)
        move(owner->geometry().center() - rect().center());
    show();
    raise();
    repaint();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}
