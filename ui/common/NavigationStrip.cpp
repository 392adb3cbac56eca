#include "NavigationStrip.h"

#include "MdiChild.h"
#include "Recordset.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

NavigationStrip::NavigationStrip(QWidget *window, bool withAdd) : QWidget(window), m_window(window)
{
    setObjectName(QStringLiteral("navigationStrip"));
    auto button = [this](const char *name, const QString &caption, const QString &tip) {
        auto *b = new QPushButton(caption, this);
        b->setObjectName(QString::fromLatin1(name));
        b->setToolTip(tip);
        b->setAutoDefault(false);
        b->setFocusPolicy(Qt::TabFocus);   // a click leaves the focus (and its checks) where it is
        return b;
    };
    cmdFirst = button("cmdFirst", QStringLiteral("|<"), tr("Go to the first record."));
    cmdPrevious = button("cmdPrevious", QStringLiteral("<"), tr("Go to the previous record."));
    cmdNext = button("cmdNext", QStringLiteral(">"), tr("Go to the next record."));
    cmdLast = button("cmdLast", QStringLiteral(">|"), tr("Go to the last record."));
    for (QPushButton *b : {cmdFirst, cmdPrevious, cmdNext, cmdLast})
        b->setFixedWidth(b->fontMetrics().horizontalAdvance(QStringLiteral(">|")) + 24);
    lblStatus = new QLabel(this);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->setToolTip(tr("Displays the record number, the total number of records, and the current record id."));
    lblStatus->setAlignment(Qt::AlignCenter);
    lblStatus->setFrameShape(QFrame::StyledPanel);
    lblStatus->setMinimumWidth(
        lblStatus->fontMetrics().horizontalAdvance(tr("Record: %1 of %2     ID: %3").arg(100000).arg(100000).arg(100000)) + 16);

    auto *strip = new QHBoxLayout(this);
    strip->setContentsMargins(0, 0, 0, 0);
    for (QWidget *w : std::initializer_list<QWidget *> {cmdFirst, cmdPrevious, lblStatus, cmdNext, cmdLast})
        strip->addWidget(w);
    if (withAdd) {
        QPushButton *cmdAdd = button("cmdAdd", tr("Add"), tr("Add a new record."));
        strip->addSpacing(12);
        strip->addWidget(cmdAdd);
        connect(cmdAdd, &QPushButton::clicked, this, &NavigationStrip::addRequested);
    }
    strip->addStretch(1);
    connect(cmdFirst, &QPushButton::clicked, this, [this] { emit moveRequested(Move::First); });
    connect(cmdPrevious, &QPushButton::clicked, this, [this] { emit moveRequested(Move::Previous); });
    connect(cmdNext, &QPushButton::clicked, this, [this] { emit moveRequested(Move::Next); });
    connect(cmdLast, &QPushButton::clicked, this, [this] { emit moveRequested(Move::Last); });
}

void NavigationStrip::showPosition(int position, int count, const QString &id)
{
    if (count <= 0) {
        lblStatus->setText(tr("Record: 0 of 0"));
        for (QPushButton *b : {cmdFirst, cmdPrevious, cmdNext, cmdLast})
            b->setEnabled(false);
        return;
    }
    if (position < 0)
        for (QPushButton *b : {cmdFirst, cmdPrevious, cmdNext, cmdLast})
            b->setEnabled(true);
    if (position <= 0)
        return;
    lblStatus->setText(tr("Record: %1 of %2     ID: %3").arg(position).arg(count).arg(id));
    cmdFirst->setEnabled(position != 1);
    cmdPrevious->setEnabled(position != 1);
    cmdNext->setEnabled(position != count);
    cmdLast->setEnabled(position != count);
}

void NavigationStrip::step(Recordset &recordset, Move move)
{
    switch (move) {
    case Move::First:
        recordset.moveFirst();
        break;
    case Move::Last:
        recordset.moveLast();
        break;
    case Move::Next:
        if (!recordset.eof())
            recordset.moveNext();
        if (recordset.eof()) {
            QApplication::beep();
            recordset.moveLast();
        }
        break;
    case Move::Previous:
        if (!recordset.bof())
            recordset.movePrevious();
        if (recordset.bof()) {
            QApplication::beep();
            recordset.moveFirst();
        }
        break;
    }
}

void NavigationStrip::watchKeys()
{
    m_window->installEventFilter(this);
    for (QWidget *w : m_window->findChildren<QWidget *>())
        w->installEventFilter(this);
}

bool NavigationStrip::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !m_window)
        return false;
    auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget || widget->window() != m_window->window())
        return false;   // an open drop-down list keeps its own keys
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool ctrl = (key->modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
    switch (key->key()) {
    case Qt::Key_PageUp:
        emit moveRequested(ctrl ? Move::First : Move::Previous);
        return true;
    case Qt::Key_PageDown:
        emit moveRequested(ctrl ? Move::Last : Move::Next);
        return true;
    case Qt::Key_Escape:
        if (auto *child = qobject_cast<MdiChild *>(m_window.data()))
            child->closeWindow();
        else
            m_window->close();
        return true;
    default:
        return false;
    }
}
