#include "PhoneBox.h"

#include <QRegularExpressionValidator>

namespace {

QString digitsOf(const QString &text)
{
    QString digits;
    for (QChar c : text)
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            digits += c;
    return digits;
}

}   // namespace

PhoneBox::PhoneBox(QWidget *parent) : QLineEdit(parent)
{
    setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9()\\- ]*")), this));
    setMaxLength(shaped(QString(kMostDigits, QLatin1Char('0'))).size());
    connect(this, &QLineEdit::textEdited, this, &PhoneBox::reshape);
}

QString PhoneBox::digits() const
{
    return digitsOf(text());
}

void PhoneBox::setDigits(const QString &digits)
{
    setText(shaped(digitsOf(digits)));
}

QString PhoneBox::shaped(const QString &digits)
{
    if (digits.size() <= 3)
        return digits;
    if (digits.size() <= 7)
        return digits.left(3) + QLatin1Char('-') + digits.mid(3);
    return QStringLiteral("(%1) %2-%3").arg(digits.left(3), digits.mid(3, 3), digits.mid(6));
}

// The cursor stays after the digit it followed.
void PhoneBox::reshape()
{
    const QString typed = text();
    const int digitsBefore = int(digitsOf(typed.left(cursorPosition())).size());
    const QString shown = shaped(digitsOf(typed).left(kMostDigits));
    if (shown == typed)
        return;
    setText(shown);
    int cursor = 0;
    for (int seen = 0; cursor < shown.size() && seen < digitsBefore; ++cursor)
        if (shown.at(cursor).isDigit())
            ++seen;
    setCursorPosition(cursor);
}
