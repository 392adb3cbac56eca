#pragma once

#include "RecordEditor.h"

// One client's monthly income (TableName "Income") or expenses (any other name).
class frmIncomeExpense : public RecordEditor
{
    Q_OBJECT

public:
    explicit frmIncomeExpense(Workspace *main, QWidget *parent = nullptr);

    QString TableName() const { return m_tableName; }
    void setTableName(const QString &name) { m_tableName = name; }
    QString IncomeExpenseItemID() const { return recordId(); }
    void setIncomeExpenseItemID(const QString &id) { setRecordId(id); }

protected:
    QString procedurePrefix() const override { return QStringLiteral("frmIncomeExpense"); }
    QString tableName() const override;
    QString keyColumn() const override;
    QString query() const override;
    void buildFields() override;
    bool checkField(QWidget *control, const QString &column, const QString &value, const QString &caption) override;
    DeleteTexts deleteTexts() const override;

private:
    bool isIncome() const { return m_tableName == QLatin1String("Income"); }
    QString typeColumn() const;

    QString m_tableName;
};
