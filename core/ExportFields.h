#pragma once

#include "RecordScope.h"

#include <QList>
#include <QString>
#include <QStringList>

// The fields a client or volunteer export can hold, in the order they are
// written: the check box caption, the column and how its value is shown.
namespace ExportFields {

enum class Shape {
    Text,   // as stored
    Number,   // a whole number
    SSN,   // digits shown as 123-45-6789
    Phone,   // digits shown as (555) 123-4567
    Date,   // ISO date
    YesNo,   // a flag shown as Yes or No
};

struct Field
{
    QString caption;
    QString column;   // the result column's name
    QString expression;   // what the statement selects; empty when it is the column itself
    Shape shape = Shape::Text;
};

const QList<Field> &all(RecordScope::Kind kind);
QStringList captions(RecordScope::Kind kind);

// The fields of the given captions (any case), in export order. Unknown
// captions are returned in *unknown and leave the result empty.
QList<Field> byCaption(RecordScope::Kind kind, const QStringList &wanted, QStringList *unknown);

}   // namespace ExportFields
