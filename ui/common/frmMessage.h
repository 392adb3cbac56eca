#pragma once

#include <QWidget>

class QLabel;

// A borderless notice shown while a long operation runs.
class frmMessage : public QWidget
{
    Q_OBJECT

public:
    explicit frmMessage(QWidget *parent = nullptr);

    void setMessage(const QString &text);
    QString Message() const;
    // Shows the notice and lets it paint before the caller starts its work.
    void showNow();

private:
    QLabel *m_lblMessage;
};
