#pragma once

#include "PasteGuard.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <functional>

class QLabel;
class QWidget;
class Recordset;

// The data-entry controls of a record window, each naming its column in the
// property "DataField" (and "R" first in "Tag" when required). It fills them
// from a recordset, reads their values back, tells of every edit the user
// makes, and runs the window's check when the user leaves a control.
class BoundFields : public QObject
{
    Q_OBJECT

public:
    // Which line edits select their whole text when the focus enters them.
    enum class SelectOnEntry { AllText, MaskedOnly };

    explicit BoundFields(QObject *parent, SelectOnEntry select = SelectOnEntry::AllText);

    void add(QWidget *control, QLabel *label);
    const QList<QWidget *> &controls() const { return m_controls; }
    QLabel *labelOf(const QWidget *control) const { return m_labels.value(control); }
    QWidget *control(const QString &dataField) const;   // by column, in any case
    // The caption a message names the field by: its label's (or check box's) text without colons.
    QString caption(const QWidget *control) const;

    void fill(const Recordset &recordset);
    QString value(const QWidget *control, const Recordset &recordset) const;

    // While loading, changes of the controls are the program's own, not edits.
    bool loading() const { return m_loading; }
    void setLoading(bool loading) { m_loading = loading; }

    // The column behind a control, for the checks on pasted and dropped text.
    void setFieldOf(PasteGuard::FieldOf fieldOf) { m_fieldOf = std::move(fieldOf); }

    // Called when the user leaves a control (not for a switch of window or an open popup).
    void setLeaveCheck(std::function<void(QWidget *)> check) { m_leaveCheck = std::move(check); }

signals:
    void edited(QWidget *control);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchChanges(QWidget *control);
    QWidget *boundOf(QObject *watched) const;

    SelectOnEntry m_select;
    QList<QWidget *> m_controls;
    QHash<const QWidget *, QLabel *> m_labels;
    std::function<void(QWidget *)> m_leaveCheck;
    PasteGuard::FieldOf m_fieldOf;
    PasteGuard *m_paste;
    bool m_loading = false;
    bool m_checking = false;
};
