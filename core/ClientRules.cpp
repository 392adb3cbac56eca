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

bool isPhoneColumn(const QString &column)
{
    static const QStringList phones
        = {QStringLiteral("HomePhone"), QStringLiteral("WorkPhone"), QStringLiteral("MobilePhone"), QStringLiteral("Fax")};
    return phones.contains(column, Qt::CaseInsensitive);
}

bool valueIsValid(const FieldInfo &field, const QString &value, QString &message)
{
    if (!basDatabase::FieldIsValid(field, value, message))
        return false;
    if (isPhoneColumn(field.name) && value.size() != 10) {
        message = QCoreApplication::translate("ClientRules", " must have all ten digits, area code first.");
        return false;
    }
    if (field.type == FieldInfo::Type::Date && basTendmark::ParseDate(value) > QDate::currentDate()) {
        message = QCoreApplication::translate("ClientRules", " cannot be in the future.");
        return false;
    }
    return true;
}

}   // namespace ClientRules
