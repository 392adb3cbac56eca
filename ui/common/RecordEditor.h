#pragma once

#include "BoundFields.h"
#include "MdiChild.h"
#include "NavigationStrip.h"
#include "Recordset.h"

#include <QList>
#include <QMap>
#include <QString>
#include <functional>

class QGridLayout;
class QLabel;
class QLineEdit;

// The shape shared by every record editor: one table's rows, one at a time,
// with a navigation strip. Edits are buffered in the result set and written
// when the user leaves the record, saves or closes the window.
class RecordEditor : public MdiChild
{
    Q_OBJECT

public:
    explicit RecordEditor(Workspace *main, QWidget *parent = nullptr);

    QString ClientID() const { return m_clientId; }
    void setClientID(const QString &id) { m_clientId = id; }
    // The key of the current record; empty while adding.
    QString recordId() const { return m_recordId; }
    // Before load: the record to open on. Once open: moves to that record.
    void setRecordId(const QString &id);

    bool DataChanged() const override { return m_dataChanged; }
    void setDataChanged(bool changed);
    bool SaveCurrentRecord() override;
    void DeleteCurrentRecord() override;
    QString currentKey() const override { return m_recordId; }
    Commands commands() const override;

    // Builds the window and opens the records; false when the window must not be shown.
    bool load();

    Recordset &recordset() { return madoPrimaryRS; }
    QLabel *label(int index) const;
    QList<QWidget *> boundControls() const { return m_fields->controls(); }
    QWidget *boundControl(const QString &dataField) const { return m_fields->control(dataField); }

    void cmdFirst_Click() { navigate(NavigationStrip::Move::First); }
    void cmdPrevious_Click() { navigate(NavigationStrip::Move::Previous); }
    void cmdNext_Click() { navigate(NavigationStrip::Move::Next); }
    void cmdLast_Click() { navigate(NavigationStrip::Move::Last); }
    void cmdAdd_Click();

protected:
    // The Tag of a required and of an optional field that moves with the window's left and top.
    static inline const QString kRequiredTag = QStringLiteral("R,Ex_Left,Ex_Top,Ex_Height,Ex_Font");
    static inline const QString kOptionalTag = QStringLiteral("Ex_Left,Ex_Top,Ex_Height,Ex_Font");
    // A text box, no wider than maxWidth pixels when given.
    static QLineEdit *textBox(int maxWidth = 0);
    // A middle initial: typing stops at one letter (a longer paste is refused with the field's message).
    static QLineEdit *initialBox();

    // What each editor supplies.
    virtual QString procedurePrefix() const = 0;   // "frmFoodService"
    virtual QString tableName() const = 0;
    virtual QString keyColumn() const = 0;
    virtual QString query() const = 0;   // bound to ClientID when hasClient()
    virtual bool hasClient() const { return true; }
    virtual QString dateColumn() const { return {}; }   // set to today on a new record; no future dates
    virtual void buildFields() = 0;   // adds the bound controls
    virtual void populateCombos();   // fills the drop-downs of lookup columns
    // Extra checks of one field during a save; false stops the save (the editor has told the user).
    virtual bool checkField(QWidget *control, const QString &column, const QString &value, const QString &caption);
    // Last word before a row is committed; false keeps the record dirty and unsaved.
    virtual bool confirmCommit() { return true; }
    virtual void afterDisplay() { }
    virtual void afterSave() { }
    virtual void controlChanged(QWidget *) { }
    struct DeleteTexts
    {
        QString question, questionTitle, done, doneTitle;
    };
    virtual DeleteTexts deleteTexts() const = 0;

    // Adds a bound control with its caption label lblLabels(index) to the field grid.
    QWidget *addField(QWidget *control, const char *objectName, const QString &dataField, const QString &tag, int index,
                      const QString &caption, int row, int column = 0, int columnSpan = 1);
    QGridLayout *fieldGrid() const { return m_fieldGrid; }
    static QLineEdit *maskedBox(const QString &mask);

    QString GetControlValue(QWidget *control) const;
    void MarkRequiredFields();
    void DisplayRecordPosition();
    void AddRecord();
    bool UpdateFields();
    bool UpdateRecord();
    void populateControls();
    bool isLoading() const { return m_fields->loading(); }
    void setLoading(bool loading) { m_fields->setLoading(loading); }
    bool refuse(QWidget *control, const QString &title, const QString &text);
    bool reopen(const QString &sql, const QVariantList &binds);
    void takeKeyOfRow() { m_recordId = madoPrimaryRS.key().toString(); }

    bool queryUnload() override;

    Recordset madoPrimaryRS;
    QLineEdit *txtClientName = nullptr;
    QLineEdit *txtClientSSN = nullptr;
    QLineEdit *txtClientDLN = nullptr;

private:
    void buildFrame();
    void moveComplete();
    void navigate(NavigationStrip::Move move);
    bool validateOnLeave(QWidget *control);
    void guard(const char *procedure, const std::function<void()> &body);
    void announceSaved();

    QString m_clientId;
    QString m_recordId;
    bool m_dataChanged = false;
    BoundFields *m_fields;
    QMap<int, QLabel *> m_labels;
    QGridLayout *m_fieldGrid = nullptr;
    NavigationStrip *m_strip = nullptr;
};
