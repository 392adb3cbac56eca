#include "frmIncomeExpense.h"

#include "AmountBox.h"
#include "DataBinding.h"
#include "Money.h"
#include "RecordQueries.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>

frmIncomeExpense::frmIncomeExpense(Workspace *main, QWidget *parent) : RecordEditor(main, parent)
{
    setObjectName(QStringLiteral("frmIncomeExpense"));
    setWindowTitle(tr("Income/Expense Item"));
}

QString frmIncomeExpense::tableName() const
{
    return isIncome() ? QStringLiteral("Income") : QStringLiteral("Expenses");
}

QString frmIncomeExpense::keyColumn() const
{
    return isIncome() ? QStringLiteral("IncomeItemID") : QStringLiteral("ExpenseItemID");
}

QString frmIncomeExpense::typeColumn() const
{
    return isIncome() ? QStringLiteral("IncomeSourceID") : QStringLiteral("ExpenseCategoryID");
}

QString frmIncomeExpense::query() const
{
    return RecordQueries::incomeOrExpenses(isIncome());
}

void frmIncomeExpense::buildFields()
{
    setWindowTitle(isIncome() ? tr("Add/Edit Income") : tr("Add/Edit Expenses"));
    addField(new QComboBox, "cboData", typeColumn(), QStringLiteral("R.Ex_Left,Ex_Top,Ex_Height,Ex_Font"), 0,
             isIncome() ? tr("Income Source") : tr("Expense Category"), 0);
    auto *amount = new AmountBox;
    amount->setMaximumWidth(130);
    addField(amount, "txtData", QStringLiteral("Amount"), QStringLiteral("R,Ex_Left,Ex_Top,Ex_Height,Ex_Font"), 1, tr("Amount"), 1);
    fieldGrid()->setColumnStretch(1, 1);
}

bool frmIncomeExpense::checkField(QWidget *control, const QString &column, const QString &value, const QString &caption)
{
    if (column == QLatin1String("Amount") && !value.isEmpty()) {
        const auto cents = Money::parse(value);
        if (cents && Money::wholeUnitsHalfEven(*cents) == 0)
            return refuse(control, tr("Data Entry Error"), tr("%1 cannot be zero.").arg(caption));
    }
    return RecordEditor::checkField(control, column, value, caption);
}

RecordEditor::DeleteTexts frmIncomeExpense::deleteTexts() const
{
    const auto *type = qobject_cast<const QComboBox *>(boundControl(typeColumn()));
    const QString description = type ? type->currentText() : QString();
    return {tr("Are you sure you want to delete '%1'?").arg(description), tr("Delete %1 Item?").arg(m_tableName),
            tr("'%1' deleted.").arg(description), tr("Delete %1 Item").arg(m_tableName)};
}
