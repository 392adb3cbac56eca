#pragma once

#include <QLineEdit>

// A box for a sum of money. It takes digits and one decimal point only, drops
// the "$" while it has the focus, and shows the currency format otherwise.
// Its value is the plain amount ("1234.50"); text that does not read as money
// is handed on as typed, for the field check to refuse.
class AmountBox : public QLineEdit
{
    Q_OBJECT

public:
    explicit AmountBox(QWidget *parent = nullptr);

    QString value() const;
    // Shows the amount in the currency format; text that is not money stays as it is.
    void showFormatted();
    // Whether a typed key is let through, given the text already there.
    static bool keyAccepted(const QString &current, const QString &key);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void setTextQuietly(const QString &text);
};
