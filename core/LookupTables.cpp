#include "LookupTables.h"

#include "SqlText.h"
#include "basDatabase.h"

namespace LookupTables {

const QList<LookupTable> &all()
{
    static const QList<LookupTable> tables = {
        {"EducationLevel",
         "EducationLevelID",
         "EducationLevelDescription",
         "Education Level",
         "mnuToolsTablesEducationLevel",
         "&Education Level",
         "^ID,800|^Education Level,5200",
         {{"Client", "EducationLevelID"}, {"Family", "EducationLevelID"}}},
        {"EthnicOrigin",
         "EthnicOriginID",
         "EthnicOriginDescription",
         "Ethnic Origin",
         "mnuToolsTablesEthnicOrigin",
         "E&thnic Origin",
         "^ID,800|^Ethnic Origin,5200",
         {{"Client", "EthnicOriginID"}, {"Family", "EthnicOriginID"}}},
        {"ExpenseCategories",
         "ExpenseCategoryID",
         "ExpenseCategoryDescription",
         "Expense Categories",
         "mnuToolsTablesExpenseCategories",
         "E&xpense Categories",
         "^ID,800|^Expense Categories,5200",
         {{"Expenses", "ExpenseCategoryID"}}},
        {"FoodServiceTypes",
         "FoodServiceTypeID",
         "FoodServiceTypeDescription",
         "Food Service Types",
         "mnuToolsTablesFoodServiceTypes",
         "&Food Service Types",
         "^ID,800|^Food Service Types,5200",
         {{"FoodService", "FoodServiceTypeID"}}},
        {"Housing",
         "HousingID",
         "HousingDescription",
         "Housing",
         "mnuToolsTablesHousing",
         "&Housing",
         "^ID,800|^Housing,5200",
         {{"Client", "HousingID"}}},
        {"IncomeSources",
         "IncomeSourceID",
         "IncomeSourceDescription",
         "Income Sources",
         "mnuToolsTablesIncomeSources",
         "&Income Sources",
         ">ID,800|^Income Sources,5200",
         {{"Income", "IncomeSourceID"}}},
        {"MaritalStatus",
         "MaritalStatusID",
         "MaritalStatusDescription",
         "Marital Status",
         "mnuToolsTablesMaritalStatus",
         "&Marital Status",
         "^ID,800|^Marital Status,5200",
         {{"Client", "MaritalStatusID"}}},
        {"OtherAssistance",
         "OtherAssistanceID",
         "OtherAssistanceDescription",
         "Other Assistance",
         "mnuToolsTablesOtherAssistance",
         "&Other Assistance",
         "^ID,800|^Other Types of Assistance,5200",
         {{"Client", "OtherAssistanceID"}}},
        {"PaymentTypes",
         "PaymentTypeID",
         "PaymentTypeDescription",
         "Payment Types",
         "mnuToolsTablesPaymentTypes",
         "&Payment Types",
         "^ID,800|^Payment Types,5200",
         {{"Payments", "PaymentsTypeID"}}},
        {"Relationships",
         "RelationshipID",
         "RelationshipDescription",
         "Family Relationships",
         "mnuToolsTablesRelationships",
         "Family &Relationships",
         "^ID,800|^Relationship,5000",
         {{"Family", "RelationshipID"}}},
        {"ReligiousPreference",
         "ReligiousPreferenceID",
         "ReligiousPreferenceDescription",
         "Religious Preference",
         "mnuToolsTablesReligiousPreference",
         "Re&ligious Preference",
         "^ID,800|^Religious Preference,5200",
         {{"Client", "ReligiousPreferenceID"}}},
        {"ZipCode",
         "ZipCodeID",
         "ZipCode",
         "Zip Codes",
         "mnuToolsTablesZipCodes",
         "&Zip Codes",
         "^ID,800|^Zip Code,1100|<City,3000|^State,1100",
         {}},
    };
    return tables;
}

const LookupTable *byName(const QString &table)
{
    for (const LookupTable &t : all())
        if (t.name() == table)
            return &t;
    return nullptr;
}

const LookupTable *referencedBy(const QString &table, const QString &column)
{
    for (const LookupTable &t : all())
        for (const Reference &r : t.references)
            if (QLatin1String(r.table) == table && QLatin1String(r.column) == column)
                return &t;
    return nullptr;
}

Query items(const LookupTable &table, const QStringList &columns)
{
    QStringList select {SqlText::id(QLatin1String(table.keyColumn))};
    for (const QString &column : columns)
        select << SqlText::id(column);
    return {
        QStringLiteral("SELECT %1 FROM %2 ORDER BY %3").arg(select.join(QStringLiteral(", ")), SqlText::id(table.name()), select.first()),
        {},
        {}};
}

QString allRows(const LookupTable &table)
{
    return QStringLiteral("SELECT * FROM %1 ORDER BY %2").arg(SqlText::id(table.name()), SqlText::id(QLatin1String(table.keyColumn)));
}

bool exists(const LookupTable &table, qint64 key)
{
    const QString sql
        = QStringLiteral("SELECT 1 FROM %1 WHERE %2 = ?").arg(SqlText::id(table.name()), SqlText::id(QLatin1String(table.keyColumn)));
    return basDatabase::Execute(sql, {key}).next();
}

Query choices(const QString &table, const QString &keyColumn, const QString &displayColumn)
{
    return {QStringLiteral("SELECT %1, %2 FROM %3 ORDER BY %1").arg(SqlText::id(keyColumn), SqlText::id(displayColumn), SqlText::id(table)),
            {},
            {}};
}

bool inUse(const LookupTable &table, qint64 key)
{
    for (const Reference &r : table.references) {
        const QString sql = QStringLiteral("SELECT 1 FROM %1 WHERE %2 = ? LIMIT 1")
                                .arg(SqlText::id(QString::fromLatin1(r.table)), SqlText::id(QString::fromLatin1(r.column)));
        if (basDatabase::Execute(sql, {key}).next())
            return true;
    }
    return false;
}

}   // namespace LookupTables
