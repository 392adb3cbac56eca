#include "ClientRules.h"

#include "basDatabase.h"
#include "basTendmark.h"

#include <QCoreApplication>
#include <QDate>

namespace ClientRules {

const QStringList &requiredColumns()
{
    static const QStringList columns = {QStringLiteral("LastName"), QStringLiteral("FirstName"), QStringLiteral("SocialSecurityNumber"),
                                        QStringLiteral("Address"),  QStringLiteral("City"),      QStringLiteral("State")};
    return columns;
}

bool valueIsValid(const FieldInfo &field, const QString &value, QString &message)
{
    if (!basDatabase::FieldIsValid(field, value, message))
        return false;
    if (field.type == FieldInfo::Type::Date && basTendmark::ParseDate(value) > QDate::currentDate()) {
        message = QCoreApplication::translate("ClientRules", " cannot be in the future.");
        return false;
    }
    return true;
}

}   // namespace ClientRules
