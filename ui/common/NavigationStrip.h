#pragma once

#include <QPointer>
#include <QWidget>

class QLabel;
class QPushButton;
class Recordset;

// The strip under a record window: |< < "Record: n of m     ID: k" > >| and,
// when asked for, Add. It also takes the window's Page Up / Page Down (with
// Ctrl: first / last) and Escape before the control with the focus sees them.
class NavigationStrip : public QWidget
{
    Q_OBJECT

public:
    enum class Move { First, Previous, Next, Last };

    NavigationStrip(QWidget *window, bool withAdd);

    // Shows where the window stands. position is 1-based; 0 is off a row: the
    // label and the buttons stay as they were. Below 0 is a new record: the
    // label stays, and every button leads back to the records. With no
    // records at all the label says "Record: 0 of 0" and every button is off.
    void showPosition(int position, int count, const QString &id);
    // Watches the window and every control it holds now for the keys.
    void watchKeys();

    // Moves a recordset; Next past the last and Previous before the first beep and stay.
    static void step(Recordset &recordset, Move move);

signals:
    void moveRequested(NavigationStrip::Move move);
    void addRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QWidget> m_window;
    QPushButton *cmdFirst = nullptr;
    QPushButton *cmdPrevious = nullptr;
    QPushButton *cmdNext = nullptr;
    QPushButton *cmdLast = nullptr;
    QLabel *lblStatus = nullptr;
};
