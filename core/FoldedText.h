#pragma once

#include <QString>
#include <QStringList>

class QSqlDatabase;

// Names and addresses as people read them: "NGUYỄN", "Nguyen" and "nguyen" are the
// same name; "12 Calle Peña Street, Apt 4" is the same address as "12 CALLE PENA ST #4".
// The database keeps each name and address folded in a key column beside it
// (LastNameKey, AddressKey, ...), and a client's ethnic origin and marital status by their
// folded descriptions (EthnicOriginKey, MaritalStatusKey), filled by triggers through the SQL functions below,
// so that searches, duplicate checks and the lists' name order use an index.
namespace FoldedText {

// Case and accents folded away, letters without a decomposition spelled plainly (đ as d,
// ø as o, æ as ae, ß as ss), runs of blanks made one and the ends trimmed.
QString name(const QString &text);
// A name fold in which punctuation is a blank and the common street words are abbreviated
// (street as st, avenue as ave, apartment and # as apt, ...).
QString address(const QString &text);

// The derived key columns of each table, which hold no data of their own.
QStringList keyColumns(const QString &table);
// What a trigger computes a table's column from, over the row (NEW or OLD): a name or address
// key folds its source column ("tendmark_fold(NEW.LastName)"); any other column is read as it is.
// source is the column it is read from.
QString valueOver(const QString &table, const QString &column, const QString &row, QString *source);

// tendmark_fold(text) and tendmark_fold_address(text) on every connection opened from now on,
// and on db when it is already open.
void RegisterSqlFunctions();
void RegisterSqlFunctions(const QSqlDatabase &db);

// Adds the key columns, their triggers and indexes, and fills them (a schema upgrade step).
bool AddKeyColumns(QSqlDatabase db, QString *error);
// Adds Client's folded copies of its ethnic origin's and marital status's descriptions, which the
// client list sorts by on an index, and the triggers that keep them (a schema upgrade step).
bool AddLookupKeys(QSqlDatabase db, QString *error);

}   // namespace FoldedText
