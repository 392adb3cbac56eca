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
         QT_TRANSLATE_NOOP("LookupTables", "Education Level"),
         "mnuToolsTablesEducationLevel",
         QT_TRANSLATE_NOOP("LookupTables", "&Education Level"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Education Level,5200"),
         {{"Client", "EducationLevelID"}, {"Family", "EducationLevelID"}}},
        {"EthnicOrigin",
         "EthnicOriginID",
         "EthnicOriginDescription",
         QT_TRANSLATE_NOOP("LookupTables", "Ethnic Origin"),
         "mnuToolsTablesEthnicOrigin",
         QT_TRANSLATE_NOOP("LookupTables", "E&thnic Origin"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Ethnic Origin,5200"),
         {{"Client", "EthnicOriginID"}, {"Family", "EthnicOriginID"}}},
        {"ExpenseCategories",
         "ExpenseCategoryID",
         "ExpenseCategoryDescription",
         QT_TRANSLATE_NOOP("LookupTables", "Expense Categories"),
         "mnuToolsTablesExpenseCategories",
         QT_TRANSLATE_NOOP("LookupTables", "E&xpense Categories"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Expense Categories,5200"),
         {{"Expenses", "ExpenseCategoryID"}}},
        {"FoodServiceTypes",
         "FoodServiceTypeID",
         "FoodServiceTypeDescription",
         QT_TRANSLATE_NOOP("LookupTables", "Food Service Types"),
         "mnuToolsTablesFoodServiceTypes",
         QT_TRANSLATE_NOOP("LookupTables", "&Food Service Types"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Food Service Types,5200"),
         {{"FoodService", "FoodServiceTypeID"}}},
        {"Housing",
         "HousingID",
         "HousingDescription",
         QT_TRANSLATE_NOOP("LookupTables", "Housing"),
         "mnuToolsTablesHousing",
         QT_TRANSLATE_NOOP("LookupTables", "&Housing"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Housing,5200"),
         {{"Client", "HousingID"}}},
        {"IncomeSources",
         "IncomeSourceID",
         "IncomeSourceDescription",
         QT_TRANSLATE_NOOP("LookupTables", "Income Sources"),
         "mnuToolsTablesIncomeSources",
         QT_TRANSLATE_NOOP("LookupTables", "&Income Sources"),
         QT_TRANSLATE_NOOP("ColumnHeadings", ">ID,800|^Income Sources,5200"),
         {{"Income", "IncomeSourceID"}}},
        {"MaritalStatus",
         "MaritalStatusID",
         "MaritalStatusDescription",
         QT_TRANSLATE_NOOP("LookupTables", "Marital Status"),
         "mnuToolsTablesMaritalStatus",
         QT_TRANSLATE_NOOP("LookupTables", "&Marital Status"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Marital Status,5200"),
         {{"Client", "MaritalStatusID"}}},
        {"OtherAssistance",
         "OtherAssistanceID",
         "OtherAssistanceDescription",
         QT_TRANSLATE_NOOP("LookupTables", "Other Assistance"),
         "mnuToolsTablesOtherAssistance",
         QT_TRANSLATE_NOOP("LookupTables", "&Other Assistance"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Other Types of Assistance,5200"),
         {{"Client", "OtherAssistanceID"}}},
        {"PaymentTypes",
         "PaymentTypeID",
         "PaymentTypeDescription",
         QT_TRANSLATE_NOOP("LookupTables", "Payment Types"),
         "mnuToolsTablesPaymentTypes",
         QT_TRANSLATE_NOOP("LookupTables", "&Payment Types"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Payment Types,5200"),
         {{"Payments", "PaymentsTypeID"}}},
        {"Relationships",
         "RelationshipID",
         "RelationshipDescription",
         QT_TRANSLATE_NOOP("LookupTables", "Family Relationships"),
         "mnuToolsTablesRelationships",
         QT_TRANSLATE_NOOP("LookupTables", "Family &Relationships"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Relationship,5000"),
         {{"Family", "RelationshipID"}}},
        {"ReligiousPreference",
         "ReligiousPreferenceID",
         "ReligiousPreferenceDescription",
         QT_TRANSLATE_NOOP("LookupTables", "Religious Preference"),
         "mnuToolsTablesReligiousPreference",
         QT_TRANSLATE_NOOP("LookupTables", "Re&ligious Preference"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Religious Preference,5200"),
         {{"Client", "ReligiousPreferenceID"}}},
        {"ZipCode",
         "ZipCodeID",
         "ZipCode",
         QT_TRANSLATE_NOOP("LookupTables", "Zip Codes"),
         "mnuToolsTablesZipCodes",
         QT_TRANSLATE_NOOP("LookupTables", "&Zip Codes"),
         QT_TRANSLATE_NOOP("ColumnHeadings", "^ID,800|^Zip Code,1100|<City,3000|^State,1100"),
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
