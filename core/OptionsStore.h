#pragma once

#include <QList>
#include <QString>

// Which tabs of the client details window show. Every tab shows unless the database says otherwise.
struct OptionFlags
{
    bool showNotesTab = true;
    bool showEmployerTab = true;
    bool showFamilyMembersTab = true;
    bool showFoodServiceTab = true;
    bool showPaymentHistoryTab = true;
    bool showIncomeExpensesTab = true;
    bool showHealthMedicalTab = true;
    bool showFEMATab = true;
    bool showFormerAddressTab = true;

    bool operator==(const OptionFlags &) const = default;
};

// The database's options row.
struct DatabaseOptions
{
    OptionFlags flags;
    int foodVisitIntervalDays = 0;   // a second food visit within this many days asks first; 0: never
    QString ageBrackets;   // the agency report's, as "0-17,18-59,60+"; empty: the first preset

    bool operator==(const DatabaseOptions &) const = default;
};

// The organisation's name, address and logo, as the controls show them (phone as digits).
struct Organization
{
    QString name;
    QString address;
    QString city;
    QString state;
    QString zip;
    QString phone;
    QString logo;   // the picture's path

    bool operator==(const Organization &) const = default;
};

// The one-row Organization and Options tables, which travel with the data.
namespace OptionsStore {

struct FlagColumn
{
    const char *column;
    bool OptionFlags::*member;
};
struct OrganizationColumn
{
    const char *column;
    QString Organization::*member;
};
const QList<FlagColumn> &flagColumns();
const QList<OrganizationColumn> &organizationColumns();

// Each reads the one row; the defaults when no database is open or the row is missing. Throw TmError.
DatabaseOptions readOptions();
Organization readOrganization();
// Writes both rows in one transaction, adding a missing row; throws TmError and then writes nothing.
void save(const Organization &organization, const DatabaseOptions &options);

}   // namespace OptionsStore
