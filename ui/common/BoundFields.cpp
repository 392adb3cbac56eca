#include "BoundFields.h"

#include "AmountBox.h"
#include "DataBinding.h"
#include "Recordset.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>

BoundFields::BoundFields(QObject *parent, SelectOnEntry select)
    : QObject(parent)
    , m_select(select)
    , m_paste(new PasteGuard(
          this, [this](const QWidget *c) { return m_fieldOf ? m_fieldOf(c) : FieldInfo(); },
          [this](const QWidget *c) { return caption(c); }))
{ }

void BoundFields::add(QWidget *control, QLabel *label)
{
    m_controls << control;
    if (label)
        m_labels.insert(control, label);
    control->installEventFilter(this);
    if (auto *combo = qobject_cast<QComboBox *>(control); combo && combo->lineEdit())
        combo->lineEdit()->installEventFilter(this);
    m_paste->watch(control);
    watchChanges(control);
}

void BoundFields::watchChanges(QWidget *control)
{
    auto changed = [this, control] {
        if (!m_loading)
            emit edited(control);
    };
    if (auto *edit = qobject_cast<QLineEdit *>(control)) {
        connect(edit, &QLineEdit::textChanged, this, changed);
    } else if (auto *combo = qobject_cast<QComboBox *>(control)) {
        connect(combo, &QComboBox::currentIndexChanged, this, changed);
        if (combo->isEditable())
            connect(combo, &QComboBox::editTextChanged, this, changed);
    } else if (auto *date = qobject_cast<QDateEdit *>(control)) {
        connect(date, &QDateEdit::dateChanged, this, changed);
    } else if (auto *text = qobject_cast<QPlainTextEdit *>(control)) {
        connect(text, &QPlainTextEdit::textChanged, this, changed);
    } else if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        connect(button, &QAbstractButton::toggled, this, changed);
    }
}

QWidget *BoundFields::control(const QString &dataField) const
{
    for (QWidget *c : m_controls)
        if (basTendmark::DataField(c).compare(dataField, Qt::CaseInsensitive) == 0)
            return c;
    return nullptr;
}

QString BoundFields::caption(const QWidget *control) const
{
    if (const QLabel *label = labelOf(control))
        return label->text().remove(QLatin1Char(':'));
    if (const auto *check = qobject_cast<const QCheckBox *>(control))
        return check->text().remove(QLatin1Char(':'));
    return basTendmark::DataField(control);
}

void BoundFields::fill(const Recordset &recordset)
{
    const bool was = m_loading;
    m_loading = true;
    basTendmark::PopulateDataControls(m_controls, recordset);
    for (QWidget *c : std::as_const(m_controls))
        if (auto *amount = qobject_cast<AmountBox *>(c))
            amount->showFormatted();
    m_loading = was;
}

QString BoundFields::value(const QWidget *control, const Recordset &recordset) const
{
    if (const auto *amount = qobject_cast<const AmountBox *>(control))
        return amount->value();
    return basTendmark::GetControlValue(control, recordset.field(basTendmark::DataField(control)));
}

QWidget *BoundFields::boundOf(QObject *watched) const
{
    auto *w = qobject_cast<QWidget *>(watched);
    if (w && !m_controls.contains(w))
        w = w->parentWidget();   // the line edit inside an editable drop-down list
    return w && m_controls.contains(w) ? w : nullptr;
}

bool BoundFields::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        QWidget *c = boundOf(watched);
        if (c && m_leaveCheck && !m_loading && !m_checking && reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason
            && reason != Qt::MenuBarFocusReason) {
            m_checking = true;
            m_leaveCheck(c);
            m_checking = false;
        }
    } else if (event->type() == QEvent::FocusIn && m_controls.contains(qobject_cast<QWidget *>(watched))) {
        if (auto *edit = qobject_cast<QLineEdit *>(watched);
            edit && !qobject_cast<AmountBox *>(edit) && (m_select == SelectOnEntry::AllText || !edit->inputMask().isEmpty()))
            QTimer::singleShot(0, edit, &QLineEdit::selectAll);
        else if (auto *text = qobject_cast<QPlainTextEdit *>(watched); text && m_select == SelectOnEntry::AllText)
            QTimer::singleShot(0, text, &QPlainTextEdit::selectAll);
    }
    return QObject::eventFilter(watched, event);
}
