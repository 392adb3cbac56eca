#include "OptionsStore.h"

#include "TmError.h"
#include "Transaction.h"
#include "basDatabase.h"

#include <optional>

namespace OptionsStore {

namespace {

const QString kOptions = QStringLiteral("Options");
const QString kOrganization = QStringLiteral("Organization");
const QString kInterval = QStringLiteral("FoodVisitIntervalDays");
const QString kAgeBrackets = QStringLiteral("AgeBrackets");

// The table's one row; none when no database is open or the table is empty.
std::optional<QSqlQuery> firstRow(const QString &table)
{
    if (!basDatabase::IsOpen())
        return std::nullopt;
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT * FROM %1 LIMIT 1").arg(table));
    return q.next() ? std::optional<QSqlQuery>(q) : std::nullopt;
}

// Writes the assignments to the table's one row, adding the row when there is none.
void updateSingleRow(const QString &table, const QStringList &columns, const QVariantList &values)
{
    if (basDatabase::ScalarValue(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)).toInt() == 0)
        basDatabase::Execute(QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(table));
    basDatabase::Execute(QStringLiteral("UPDATE %1 SET %2 = ? WHERE rowid = (SELECT rowid FROM %1 LIMIT 1)")
                             .arg(table, columns.join(QStringLiteral(" = ?, "))),
                         values);
}

}   // namespace

const QList<FlagColumn> &flagColumns()
{
    static const QList<FlagColumn> columns = {
        {"ShowNotesTab", &OptionFlags::showNotesTab},
        {"ShowEmployerTab", &OptionFlags::showEmployerTab},
        {"ShowFamilyMembersTab", &OptionFlags::showFamilyMembersTab},
        {"ShowFoodServiceTab", &OptionFlags::showFoodServiceTab},
        {"ShowPaymentHistoryTab", &OptionFlags::showPaymentHistoryTab},
        {"ShowIncomeExpensesTab", &OptionFlags::showIncomeExpensesTab},
        {"ShowHealthMedicalTab", &OptionFlags::showHealthMedicalTab},
        {"ShowFEMATab", &OptionFlags::showFEMATab},
        {"ShowFormerAddressTab", &OptionFlags::showFormerAddressTab},
    };
    return columns;
}

const QList<OrganizationColumn> &organizationColumns()
{
    static const QList<OrganizationColumn> columns = {
        {"OrganizationName", &Organization::name}, {"OrganizationAddress", &Organization::address},
        {"OrganizationCity", &Organization::city}, {"OrganizationState", &Organization::state},
        {"OrganizationZip", &Organization::zip},   {"OrganizationPhone", &Organization::phone},
        {"OrganizationLogo", &Organization::logo},
    };
    return columns;
}

DatabaseOptions readOptions()
{
    DatabaseOptions options;
    if (const std::optional<QSqlQuery> q = firstRow(kOptions)) {
        for (const FlagColumn &c : flagColumns())
            options.flags.*c.member = q->value(QLatin1String(c.column)).toInt() != 0;
        options.foodVisitIntervalDays = q->value(kInterval).toInt();
        options.ageBrackets = q->value(kAgeBrackets).toString();
    }
    return options;
}

Organization readOrganization()
{
    Organization organization;
    if (const std::optional<QSqlQuery> q = firstRow(kOrganization))
        for (const OrganizationColumn &c : organizationColumns())
            organization.*c.member = q->value(QLatin1String(c.column)).toString();
    return organization;
}

void save(const Organization &organization, const DatabaseOptions &options)
{
    Transaction transaction(basDatabase::Connection());
    if (!transaction.active())
        throw TmError(-1, QStringLiteral("Could not start a transaction."));
    QStringList columns;
    QVariantList values;
    for (const OrganizationColumn &c : organizationColumns()) {
        columns << QString::fromLatin1(c.column);
        values << basDatabase::StorageValue(basDatabase::Field(kOrganization, columns.last()), organization.*c.member);
    }
    updateSingleRow(kOrganization, columns, values);

    columns.clear();
    values.clear();
    for (const FlagColumn &c : flagColumns()) {
        columns << QString::fromLatin1(c.column);
        values << (options.flags.*c.member ? 1 : 0);
    }
    columns << kInterval;
    values << options.foodVisitIntervalDays;
    columns << kAgeBrackets;
    values << (options.ageBrackets.isEmpty() ? QVariant() : QVariant(options.ageBrackets));
    updateSingleRow(kOptions, columns, values);
    if (!transaction.commit())
        throw TmError(-1, QStringLiteral("Could not save the options: %1").arg(transaction.error()));
}

}   // namespace OptionsStore
