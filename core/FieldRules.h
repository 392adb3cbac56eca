#pragma once

#include "FieldInfo.h"

#include <QString>
#include <QVariant>

// What a column accepts, whichever way a value arrives: typed, pasted, dropped,
// set by the program or imported. Messages follow the field's caption.
namespace FieldRules {

// Text as it is stored: composed (NFC), without control characters; a
// single-line value has its tabs and line breaks as blanks and is trimmed,
// a multi-line one keeps its line breaks as "\n".
QString clean(const QString &text, bool multiLine);
// Characters as people count them: a letter outside the basic plane is one.
qsizetype characterCount(const QString &text);
bool isPhoneColumn(const QString &column);

bool valueIsValid(const FieldInfo &field, const QVariant &value, QString &message);

}   // namespace FieldRules
