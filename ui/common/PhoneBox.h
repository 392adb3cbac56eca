#pragma once

#include <QLineEdit>

// A box for a phone number of seven or ten digits, shaped as it is typed:
// 555-1234, and (555) 555-1234 once there are more than seven digits.
// Its value is the digits alone.
class PhoneBox : public QLineEdit
{
    Q_OBJECT

public:
    static constexpr int kMostDigits = 10;

    explicit PhoneBox(QWidget *parent = nullptr);

    QString digits() const;
    void setDigits(const QString &digits);
    // How digits are shown: "555-1234", "(555) 555-1234", and the steps between.
    static QString shaped(const QString &digits);

private:
    void reshape();
};
