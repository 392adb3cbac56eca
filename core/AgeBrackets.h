#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The age brackets the agency report counts people in, written as "0-17,18-59,60+".
// They start at 0 and reach 120 without gaps or overlaps; the last one is open
// ("60+"), so that nobody old is left out.
namespace AgeBrackets {

struct Bracket
{
    int low = 0;
    int high = -1;   // -1: open, "and older"

    bool operator==(const Bracket &) const = default;
};

constexpr int kTopAge = 120;
constexpr int kMaxBrackets = 12;

// The two brackets food banks ask for most; the first is the one a new database uses.
QStringList presets();

// Reads the text. On failure returns false and says why in *error (for the user).
bool parse(const QString &text, QList<Bracket> *brackets, QString *error);
// The brackets as text, in the form parse reads: "0-17,18-59,60+".
QString text(const QList<Bracket> &brackets);
// One bracket as printed: "0-17", "60+".
QString label(const Bracket &bracket);

// The organisation's brackets as stored with its options; the first preset when none
// are stored or what is stored no longer reads. Throws TmError.
QList<Bracket> stored();

}   // namespace AgeBrackets
