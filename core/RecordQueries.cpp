#include "RecordQueries.h"

#include "FilterStatement.h"
#include "SqlText.h"
#include "basDatabase.h"

namespace RecordQueries {

namespace {

// Line breaks in a text column as spaces, so that a grid row stays one line.
QString oneLine(const QString &column)
{
    return QStringLiteral("replace(replace(%1, char(13), ''), char(10), ' ')").arg(column);
}

}   // namespace

QString allClients()
{
    return QStringLiteral("SELECT * FROM Client");
}

QString clientsByName(const QString &filter)
{
    return (filter.isEmpty() ? allClients() : FilterStatement::matching(QStringLiteral("Client"), filter))
        + QStringLiteral(" ORDER BY LastNameKey, FirstNameKey, ClientID");
}

QString volunteersByName(const QString &filter)
{
    return (filter.isEmpty() ? QStringLiteral("SELECT * FROM Volunteer") : FilterStatement::matching(QStringLiteral("Volunteer"), filter))
        + QStringLiteral(" ORDER BY LastNameKey, FirstNameKey, VolunteerID");
}

// What each field of the client list sorts by, each on an index of Client: the stored value (or the
// folded keys of the name, the address and the ethnic origin's and marital status's descriptions),
// then the client's ID for ties. Shown dates and SSNs sort alike stored.
QList<QStringList> clientListOrders()
{
    const QString id = QStringLiteral("ClientID");
    const QStringList name {QStringLiteral("LastNameKey"), QStringLiteral("FirstNameKey"), id};
    auto by = [&](const QString &column) { return QStringList {column, id}; };
    return {name,
            {id},
            name,
            by(QStringLiteral("FirstNameKey")),
            by(QStringLiteral("MiddleInitial")),
            by(QStringLiteral("SocialSecurityNumber")),
            by(QStringLiteral("DriversLicenseNumber")),
            by(QStringLiteral("BirthDate")),
            by(QStringLiteral("Gender")),
            by(QStringLiteral("EthnicOriginKey")),
            by(QStringLiteral("MaritalStatusKey")),
            {QStringLiteral("AddressKey"), QStringLiteral("CityKey"), QStringLiteral("State"), id},
            by(QStringLiteral("City")),
            by(QStringLiteral("State")),
            by(QStringLiteral("ZipCode")),
            by(QStringLiteral("HomePhone")),
            by(QStringLiteral("WorkPhone")),
            by(QStringLiteral("MobilePhone")),
            by(QStringLiteral("Comments"))};
}

Query clientList(const QString &base)
{
    Query query;
    query.columns
        = QStringLiteral("ClientID, ClientID, LastName, FirstName, MiddleInitial, ") + SqlText::ssn(QStringLiteral("SocialSecurityNumber"))
        + QStringLiteral(" AS SocialSecurityNumber, ") + QStringLiteral("DriversLicenseNumber, ")
        + SqlText::date(QStringLiteral("BirthDate")) + QStringLiteral(" AS BirthDate, Gender, ")
        + QStringLiteral(
              "(SELECT EthnicOriginDescription FROM EthnicOrigin WHERE EthnicOriginID=Client.EthnicOriginID) AS EthnicOriginDescription, ")
        + QStringLiteral(
              "(SELECT MaritalStatusDescription FROM MaritalStatus WHERE MaritalStatusID=Client.MaritalStatusID) AS MaritalStatusDescription, ")
        + oneLine(QStringLiteral("Address")) + QStringLiteral(" AS Address, City, State, ZipCode, ")
        + SqlText::phone(QStringLiteral("HomePhone")) + QStringLiteral(" AS HomePhone, ") + SqlText::phone(QStringLiteral("WorkPhone"))
        + QStringLiteral(" AS WorkPhone, ") + SqlText::phone(QStringLiteral("MobilePhone")) + QStringLiteral(" AS MobilePhone, ")
        + oneLine(QStringLiteral("Comments")) + QStringLiteral(" AS Comments");
    // A filter's statement is the base too: the seek then runs over the rows it returns, no dearer than OFFSET.
    query.source = QStringLiteral("(") + base + QStringLiteral(") AS Client");
    query.orders = clientListOrders();
    query.sql
        = QStringLiteral("SELECT %1 FROM %2 ORDER BY %3").arg(query.columns, query.source, query.orders.first().join(QStringLiteral(", ")));
    query.countSql = QStringLiteral("SELECT ClientID FROM (%1)").arg(base);
    return query;
}

QString familyMembers()
{
    return QStringLiteral("SELECT * FROM Family WHERE ClientID = ? ORDER BY FamilyMemberID");
}

QString foodServices()
{
    return QStringLiteral("SELECT * FROM FoodService WHERE ClientID = ? ORDER BY FoodServiceDate, FoodServiceID");
}

QString payments()
{
    return QStringLiteral("SELECT * FROM Payments WHERE ClientID = ? ORDER BY PaymentDate, PaymentID");
}

QString incomeOrExpenses(bool income)
{
    return income ? QStringLiteral("SELECT * FROM Income WHERE ClientID = ? ORDER BY IncomeSourceID, IncomeItemID")
                  : QStringLiteral("SELECT * FROM Expenses WHERE ClientID = ? ORDER BY ExpenseCategoryID, ExpenseItemID");
}

Household household(qint64 clientId)
{
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT (SELECT COUNT(*) FROM Family WHERE ClientID = ?) + 1, "
                                                      "(SELECT MAX(FoodServiceDate) FROM FoodService WHERE ClientID = ?)"),
                                       {clientId, clientId});
    Household household;
    if (q.next())
        household = {q.value(0).toInt(), QDate::fromString(q.value(1).toString(), Qt::ISODate)};
    return household;
}

QDate lastFoodService(qint64 clientId, const QDate &onOrBefore)
{
    const QVariant last = basDatabase::ScalarValue(
        QStringLiteral("SELECT MAX(FoodServiceDate) FROM FoodService WHERE ClientID = ? AND FoodServiceDate <= ?"),
        {clientId, onOrBefore.toString(Qt::ISODate)});
    return QDate::fromString(last.toString(), Qt::ISODate);
}

}   // namespace RecordQueries
