#pragma once

#include "FieldInfo.h"

#include <QString>
#include <QStringList>

// What a client's record must hold, whoever enters it: the client details
// window and the import check values with these same rules.
namespace ClientRules {

// The columns a client cannot be saved without.
const QStringList &requiredColumns();
// A non-empty value as the window holds it (digits for masked fields, dates
// "mm/dd/yyyy"); on failure message is the text that follows the field's caption.
bool valueIsValid(const FieldInfo &field, const QString &value, QString &message);

}   // namespace ClientRules
