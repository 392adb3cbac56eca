#pragma once

#include "RecordEditor.h"

// The assistance payments made for one client.
class frmPaymentHistory : public RecordEditor
{
    Q_OBJECT

public:
    explicit frmPaymentHistory(Workspace *main, QWidget *parent = nullptr);

    QString PaymentID() const { return recordId(); }
    void setPaymentID(const QString &id) { setRecordId(id); }

protected:
    QString procedurePrefix() const override { return QStringLiteral("frmPaymentHistory"); }
    QString tableName() const override { return QStringLiteral("Payments"); }
    QString keyColumn() const override { return QStringLiteral("PaymentID"); }
    QString query() const override;
    QString dateColumn() const override { return QStringLiteral("PaymentDate"); }
    void buildFields() override;
    bool checkField(QWidget *control, const QString &column, const QString &value, const QString &caption) override;
    DeleteTexts deleteTexts() const override;
};
