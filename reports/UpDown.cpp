#include "UpDown.h"

#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

UpDown::UpDown(QLineEdit *buddy, double step, double minimum, double maximum, int decimals, QWidget *parent)
    : QWidget(parent)
    , m_buddy(buddy)
    , m_step(step)
    , m_minimum(minimum)
    , m_maximum(maximum)
    , m_decimals(decimals)
{
    auto *up = new QToolButton(this);
    up->setObjectName(QStringLiteral("cmdUp"));
    up->setArrowType(Qt::UpArrow);
    up->setAutoRepeat(true);
    auto *down = new QToolButton(this);
    down->setObjectName(QStringLiteral("cmdDown"));
    down->setArrowType(Qt::DownArrow);
    down->setAutoRepeat(true);
    for (QToolButton *b : {up, down}) {
        b->setFocusPolicy(Qt::NoFocus);
        b->setFixedSize(18, 12);
    }
    connect(up, &QToolButton::clicked, this, &UpDown::IncrementValue);
    connect(down, &QToolButton::clicked, this, &UpDown::DecrementValue);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(up);
    layout->addWidget(down);
}

void UpDown::setRange(double minimum, double maximum)
{
    m_minimum = minimum;
    m_maximum = maximum;
}

void UpDown::IncrementValue()
{
    change(m_step);
}

void UpDown::DecrementValue()
{
    change(-m_step);
}

void UpDown::change(double by)
{
    bool ok = false;
    double value = m_buddy->text().trimmed().toDouble(&ok);
    if (!ok)
        value = 0;
    value = std::clamp(value + by, m_minimum, m_maximum);
    m_buddy->setText(QString::number(value, 'f', m_decimals));
}
