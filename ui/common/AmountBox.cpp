#include "AmountBox.h"

#include "Money.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTimer>

AmountBox::AmountBox(QWidget *parent) : QLineEdit(parent)
{
    setAlignment(Qt::AlignRight);
}

QString AmountBox::value() const
{
    const QString typed = text().trimmed();
    if (typed.isEmpty())
        return {};
    const auto cents = Money::parse(typed);
    return cents ? Money::plain(*cents) : typed;
}

void AmountBox::showFormatted()
{
    const auto cents = Money::parse(text());
    if (cents && !text().trimmed().isEmpty())
        setTextQuietly(Money::format(*cents));
}

bool AmountBox::keyAccepted(const QString &current, const QString &key)
{
    if (key.size() != 1)
        return false;
    const QChar c = key.at(0);
    if (c.isDigit())
        return c.unicode() < 128;
    if (c == QLatin1Char('.'))
        return !current.contains(QLatin1Char('.'));
    return c == QLatin1Char('\r') || c == QLatin1Char('\n') || c == QLatin1Char('\b');
}

void AmountBox::keyPressEvent(QKeyEvent *event)
{
    const QString key = event->text();
    if (!key.isEmpty() && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) && key.at(0).isPrint()
        && !keyAccepted(text(), key)) {
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void AmountBox::focusInEvent(QFocusEvent *event)
{
    if (text().contains(QLatin1Char('$')))
        setTextQuietly(text().remove(QLatin1Char('$')));
    QLineEdit::focusInEvent(event);
    QTimer::singleShot(0, this, &QLineEdit::selectAll);
}

// Reformatting is no change of the value: nobody hears of it.
void AmountBox::setTextQuietly(const QString &text)
{
    const QSignalBlocker block(this);
    setText(text);
}
