#pragma once

#include <QString>
#include <optional>

// Money is held exactly, as whole cents.
namespace Money {

std::optional<qint64> parse(const QString &text);   // "$1,234.50", "1234.5", ".5"; rounds half to even at the cent
QString format(qint64 cents);   // the currency format: "$1,234.50", "($12.00)" when negative
QString plain(qint64 cents);   // "1234.50", for editing and export
qint64 wholeUnitsHalfEven(qint64 cents);   // whole dollars, rounding half to even (0.50 -> 0, 1.50 -> 2)

}   // namespace Money
