#pragma once

#include "RecordEditor.h"

// The organisation's volunteers; the set shown can be narrowed by a filter query.
class frmVolunteer : public RecordEditor
{
    Q_OBJECT

public:
    explicit frmVolunteer(Workspace *main, QWidget *parent = nullptr);

    Kind kind() const override { return Kind::Volunteer; }
    QString VolunteerID() const { return recordId(); }
    void setVolunteerID(const QString &id) { setRecordId(id); }

    bool hasSQL() const override { return true; }
    QString SQL() const override { return m_sql; }
    void setSQL(const QString &sql) override;
    void ExecuteSQL() override;
    bool leaveCurrentRecord() override { return UpdateRecord(); }
    void SortColumn(Qt::SortOrder order) override;
    int recordCount() const override { return madoPrimaryRS.recordCount(); }
    void showRecord(const QString &id) override { setVolunteerID(id); }
    Commands commands() const override;

protected:
    QString procedurePrefix() const override { return QStringLiteral("frmVolunteer"); }
    QString tableName() const override { return QStringLiteral("Volunteer"); }
    QString keyColumn() const override { return QStringLiteral("VolunteerID"); }
    QString query() const override;
    bool hasClient() const override { return false; }
    void buildFields() override;
    void populateCombos() override;
    void controlChanged(QWidget *control) override;
    DeleteTexts deleteTexts() const override;

private:
    QString sortField() const;

    QString m_sql;
    QString m_sortField;   // empty: by name
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
