#pragma once

#include <QWidget>

class QLineEdit;

// The up-down arrows beside a number box: each click adds or takes away one step
// from the box's value (an empty box counts as 0), kept within the limits.
class UpDown : public QWidget
{
    Q_OBJECT

public:
    UpDown(QLineEdit *buddy, double step, double minimum, double maximum, int decimals, QWidget *parent = nullptr);

    void setRange(double minimum, double maximum);
    void IncrementValue();
    void DecrementValue();

private:
    void change(double by);

    QLineEdit *m_buddy;
    double m_step;
    double m_minimum;
    double m_maximum;
    int m_decimals;
};
