#include "FilterFields.h"

namespace FilterFields {

namespace {

using T = Type;

Field lookup(const char *caption, const char *table, const char *column, const char *lookupTable, const char *key, const char *description)
{
    return {caption, table, column, T::IDNumber, lookupTable, key, description};
}

}   // namespace

bool Field::numberStoredAsText() const
{
    const QLatin1String name(column);
    return type == T::Number && (name == QLatin1String("ZipCode") || name == QLatin1String("EmployerZip"));
}

const QList<Field> &forTable(const QString &tableName)
{
    static const QList<Field> client = {
        {"Last Name", "Client", "LastName", T::Text},
        {"First Name", "Client", "FirstName", T::Text},
        {"Middle Initial", "Client", "MiddleInitial", T::Text},
        {"Social Security Number", "Client", "SocialSecurityNumber", T::Text},
        {"Drivers License Number", "Client", "DriversLicenseNumber", T::Text},
        {"Birth Date", "Client", "BirthDate", T::Date},
        // The client's gender is kept as its one-letter code, so the list compares codes.
        lookup("Gender", "Client", "Gender", "Gender", "GenderCode", "GenderCode"),
        lookup("Ethnic Origin", "Client", "EthnicOriginID", "EthnicOrigin", "EthnicOriginID", "EthnicOriginDescription"),
        lookup("Marital Status", "Client", "MaritalStatusID", "MaritalStatus", "MaritalStatusID", "MaritalStatusDescription"),
        {"Address", "Client", "Address", T::Text},
        {"City", "Client", "City", T::Text},
        {"State", "Client", "State", T::Text},
        {"Zip Code", "Client", "ZipCode", T::Number},
        {"Home Phone", "Client", "HomePhone", T::Text},
        {"Work Phone", "Client", "WorkPhone", T::Text},
        {"Mobile Phone", "Client", "MobilePhone", T::Text},
        {"Fax", "Client", "Fax", T::Text},
        lookup("Education Level", "Client", "EducationLevelID", "EducationLevel", "EducationLevelID", "EducationLevelDescription"),
        lookup("Housing", "Client", "HousingID", "Housing", "HousingID", "HousingDescription"),
        lookup("Religious Preference", "Client", "ReligiousPreferenceID", "ReligiousPreference", "ReligiousPreferenceID",
               "ReligiousPreferenceDescription"),
        lookup("Other Assistance", "Client", "OtherAssistanceID", "OtherAssistance", "OtherAssistanceID", "OtherAssistanceDescription"),
        {"Comments", "Client", "Comments", T::Text},
        {"Employer Name", "Client", "EmployerName", T::Text},
        {"Employer Address", "Client", "EmployerAddress", T::Text},
        {"Employer City", "Client", "EmployerCity", T::Text},
        {"Employer State", "Client", "EmployerState", T::Text},
        {"Employer Zip", "Client", "EmployerZip", T::Number},
        {"Employment Duration Years", "Client", "EmployerDurationYears", T::Number},
        {"Employment Duration Months", "Client", "EmployerDurationMonths", T::Number},
        {"Medical Problems", "Client", "MedicalProblems", T::Text},
        {"Dietary Requirements", "Client", "DietaryRequirements", T::Text},
        {"Eligible for FEMA?", "Client", "FEMAEligible", T::Boolean},
        {"FEMA Contacted?", "Client", "FEMAContacted", T::Boolean},
        {"FEMA Comments", "Client", "FEMAComments", T::Text},
        {"Former Address", "Client", "FormerAddress", T::Text},
        {"Relatives Searching For", "Client", "RelativesSearchingFor", T::Text},
        {"Food Service Date", "FoodService", "FoodServiceDate", T::Date},
        lookup("Food Service Type", "FoodService", "FoodServiceTypeID", "FoodServiceTypes", "FoodServiceTypeID",
               "FoodServiceTypeDescription"),
        {"Food Service Bags", "FoodService", "NumberOfBags", T::Number},
        {"Food Service Comments", "FoodService", "Comments", T::Text},
        {"Payment Date", "Payments", "PaymentDate", T::Date},
        lookup("Payment Type", "Payments", "PaymentsTypeID", "PaymentTypes", "PaymentTypeID", "PaymentTypeDescription"),
        {"Payment Amount", "Payments", "AmountPaid", T::Currency},
        {"Payment Amount Requested", "Payments", "AmountRequested", T::Currency},
        {"Payment Comments", "Payments", "Comments", T::Text},
        lookup("Income Source", "Income", "IncomeSourceID", "IncomeSources", "IncomeSourceID", "IncomeSourceDescription"),
        {"Income Amount", "Income", "Amount", T::Currency},
        lookup("Expense Category", "Expenses", "ExpenseCategoryID", "ExpenseCategories", "ExpenseCategoryID", "ExpenseCategoryDescription"),
        {"Expense Amount", "Expenses", "Amount", T::Currency},
    };
    static const QList<Field> volunteer = {
        {"Last Name", "Volunteer", "LastName", T::Text},
        {"First Name", "Volunteer", "FirstName", T::Text},
        {"Middle Initial", "Volunteer", "MiddleInitial", T::Text},
        {"Address", "Volunteer", "Address", T::Text},
        {"City", "Volunteer", "City", T::Text},
        {"State", "Volunteer", "State", T::Text},
        {"Zip Code", "Volunteer", "ZipCode", T::Number},
        {"Home Phone", "Volunteer", "HomePhone", T::Text},
        {"Work Phone", "Volunteer", "WorkPhone", T::Text},
        {"Mobile Phone", "Volunteer", "MobilePhone", T::Text},
        {"Fax", "Volunteer", "Fax", T::Text},
        {"E-Mail Address", "Volunteer", "EMailAddress", T::Text},
        {"Emergency Contact", "Volunteer", "EmergencyContact", T::Text},
        {"Emergency Contact Phone", "Volunteer", "EmergencyContactPhone", T::Text},
        {"Affiliation", "Volunteer", "Affiliation", T::Text},
        {"Number In Party", "Volunteer", "NumberInParty", T::Number},
        {"Comments", "Volunteer", "Comments", T::Text},
    };
    static const QList<Field> none;
    if (tableName == QLatin1String("Client"))
        return client;
    return tableName == QLatin1String("Volunteer") ? volunteer : none;
}

const Field *find(const QString &tableName, const QString &caption)
{
    for (const Field &f : forTable(tableName))
        if (caption == QLatin1String(f.caption))
            return &f;
    return nullptr;
}

QStringList conditions(Type type)
{
    static const QStringList comparisons = {
        "is equal to",
        "is not equal to",
        "is less than",
        "is not less than",
        "is less than or equal to",
        "is not less than or equal to",
        "is greater than",
        "is not greater than",
        "is greater than or equal to",
        "is not greater than or equal to",
    };
    static const QStringList empty = {"is empty", "is not empty"};
    static const QStringList range = {"is between", "is not between"};
    static const QStringList texts = {"contains", "does not contain", "begins with", "does not begin with"};
    static const QStringList like = {"is like", "is not like"};
    switch (type) {
    case Type::Date:
    case Type::Currency:
        return comparisons + range + empty;
    case Type::Text:
        return comparisons.mid(0, 2) + texts + range + like + empty;
    case Type::IDNumber:
        return comparisons.mid(0, 2) + empty;
    case Type::Number:
        return comparisons + texts + range + like + empty;
    case Type::Boolean:
        return {"is True", "is False"};
    }
    return {};
}

bool isRange(const QString &condition)
{
    return condition.contains(QLatin1String("between"));
}

bool needsValue(const QString &condition)
{
    return !condition.endsWith(QLatin1String(" empty")) && !condition.startsWith(QLatin1String("is True"))
        && !condition.startsWith(QLatin1String("is False"));
}

}   // namespace FilterFields
