#pragma once

#include "RecordEditor.h"

// The members of one client's household.
class frmFamilyMember : public RecordEditor
{
    Q_OBJECT

public:
    explicit frmFamilyMember(Workspace *main, QWidget *parent = nullptr);

    QString FamilyMemberID() const { return recordId(); }
    void setFamilyMemberID(const QString &id) { setRecordId(id); }

protected:
    QString procedurePrefix() const override { return QStringLiteral("frmFamilyMember"); }
    QString tableName() const override { return QStringLiteral("Family"); }
    QString keyColumn() const override { return QStringLiteral("FamilyMemberID"); }
    QString query() const override;
    void buildFields() override;
    void populateCombos() override;
    void controlChanged(QWidget *control) override;
    bool checkField(QWidget *control, const QString &column, const QString &value, const QString &caption) override;
    DeleteTexts deleteTexts() const override;

private:
    void PopulateCityState();
};
