#pragma once

#include "RecordEditor.h"

// The food given to one client: date, type, number of bags and comments.
class frmFoodService : public RecordEditor
{
    Q_OBJECT

public:
    explicit frmFoodService(Workspace *main, QWidget *parent = nullptr);

    QString FoodServiceID() const { return recordId(); }
    void setFoodServiceID(const QString &id) { setRecordId(id); }

protected:
    QString procedurePrefix() const override { return QStringLiteral("frmFoodService"); }
    QString tableName() const override { return QStringLiteral("FoodService"); }
    QString keyColumn() const override { return QStringLiteral("FoodServiceID"); }
    QString query() const override;
    QString dateColumn() const override { return QStringLiteral("FoodServiceDate"); }
    void buildFields() override;
    bool checkField(QWidget *control, const QString &column, const QString &value, const QString &caption) override;
    bool confirmCommit() override;
    DeleteTexts deleteTexts() const override;
};
