#include "ClientRecordQueries.h"

#include "SqlText.h"
#include "basDatabase.h"

#include <QSqlQuery>
#include <QStringList>
#include <iterator>

namespace ClientRecordQueries {

Source source(Kind kind)
{
    switch (kind) {
    case Kind::FamilyMember:
        return {QStringLiteral("Family"), QStringLiteral("FamilyMemberID")};
    case Kind::FoodService:
        return {QStringLiteral("FoodService"), QStringLiteral("FoodServiceID")};
    case Kind::Payment:
        return {QStringLiteral("Payments"), QStringLiteral("PaymentID")};
    case Kind::Income:
        return {QStringLiteral("Income"), QStringLiteral("IncomeItemID")};
    case Kind::Expenses:
        return {QStringLiteral("Expenses"), QStringLiteral("ExpenseItemID")};
    }
    return {};
}

namespace {

QString columns(Kind kind, Form form)
{
    const bool full = form == Form::Full;
    switch (kind) {
    case Kind::FamilyMember:
        return QStringLiteral("Family.FamilyMemberID, Relationships.RelationshipDescription, ")
            + SqlText::fullName(QStringLiteral("Family")) + QStringLiteral(" AS FullName, ")
            + SqlText::yearsSince(QStringLiteral("Family.BirthDate")) + QStringLiteral(" AS Age")
            + (full ? QStringLiteral(", Family.Gender, ") + SqlText::ssn(QStringLiteral("Family.SocialSecurityNumber"))
                       + QStringLiteral(" AS SocialSecurityNumber")
                    : QString());
    case Kind::FoodService:
        return QStringLiteral("FoodService.FoodServiceID, ") + SqlText::date(QStringLiteral("FoodService.FoodServiceDate"))
            + QStringLiteral(" AS FoodServiceDate, FoodServiceTypes.FoodServiceTypeDescription, FoodService.NumberOfBags")
            + (full ? QStringLiteral(", FoodService.Comments") : QString());
    case Kind::Payment:
        return QStringLiteral("Payments.PaymentID, ") + SqlText::date(QStringLiteral("Payments.PaymentDate"))
            + QStringLiteral(" AS PaymentDate, PaymentTypes.PaymentTypeDescription, ")
            + SqlText::currency(QStringLiteral("Payments.AmountPaid")) + QStringLiteral(" AS AmountPaid")
            + (full ? QStringLiteral(", ") + SqlText::currency(QStringLiteral("Payments.AmountRequested"))
                       + QStringLiteral(" AS AmountRequested, Payments.Comments")
                    : QString());
    case Kind::Income:
        return QStringLiteral("Income.IncomeItemID, IncomeSources.IncomeSourceDescription, ")
            + SqlText::currency(QStringLiteral("Income.Amount")) + QStringLiteral(" AS Amount");
    case Kind::Expenses:
        return QStringLiteral("Expenses.ExpenseItemID, ExpenseCategories.ExpenseCategoryDescription, ")
            + SqlText::currency(QStringLiteral("Expenses.Amount")) + QStringLiteral(" AS Amount");
    }
    return {};
}

// The joined look-up table, the client filter and the order of the rows.
QString rest(Kind kind)
{
    switch (kind) {
    case Kind::FamilyMember:
        return QStringLiteral("FROM Family LEFT JOIN Relationships ON Family.RelationshipID=Relationships.RelationshipID "
                              "WHERE Family.ClientID = ? ORDER BY Family.FamilyMemberID");
    case Kind::FoodService:
        return QStringLiteral(
            "FROM FoodService LEFT JOIN FoodServiceTypes ON FoodService.FoodServiceTypeID=FoodServiceTypes.FoodServiceTypeID "
            "WHERE FoodService.ClientID = ? ORDER BY FoodService.FoodServiceDate, FoodService.FoodServiceID");
    case Kind::Payment:
        // The payments name their type in PaymentsTypeID.
        return QStringLiteral("FROM Payments LEFT JOIN PaymentTypes ON Payments.PaymentsTypeID=PaymentTypes.PaymentTypeID "
                              "WHERE Payments.ClientID = ? ORDER BY Payments.PaymentDate, Payments.PaymentID");
    case Kind::Income:
        return QStringLiteral("FROM Income LEFT JOIN IncomeSources ON Income.IncomeSourceID=IncomeSources.IncomeSourceID "
                              "WHERE Income.ClientID = ? ORDER BY IncomeSources.IncomeSourceDescription");
    case Kind::Expenses:
        return QStringLiteral("FROM Expenses LEFT JOIN ExpenseCategories ON Expenses.ExpenseCategoryID=ExpenseCategories.ExpenseCategoryID "
                              "WHERE Expenses.ClientID = ? ORDER BY ExpenseCategories.ExpenseCategoryDescription");
    }
    return {};
}

}   // namespace

Query rowsOf(Kind kind, qint64 clientId, Form form)
{
    return {QStringLiteral("SELECT ") + columns(kind, form) + QLatin1Char(' ') + rest(kind), {clientId}, {}};
}

QList<Kind> kindsWithRows(qint64 clientId)
{
    static const Kind kinds[] = {Kind::FamilyMember, Kind::FoodService, Kind::Payment, Kind::Income, Kind::Expenses};
    QStringList exists;
    QVariantList binds;
    for (const Kind kind : kinds) {
        const Source s = source(kind);
        exists << QStringLiteral("EXISTS (SELECT 1 FROM %1 WHERE ClientID = ?)").arg(s.table);
        binds << clientId;
    }
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT ") + exists.join(QStringLiteral(", ")), binds);
    QList<Kind> found;
    if (q.next())
        for (int i = 0; i < int(std::size(kinds)); ++i)
            if (q.value(i).toBool())
                found << kinds[i];
    return found;
}

}   // namespace ClientRecordQueries
