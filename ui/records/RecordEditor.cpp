#include "RecordEditor.h"

#include "DataBinding.h"
#include "Money.h"
#include "Prompt.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basTendmark.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QFocusEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

namespace {
constexpr char kAmount[] = "Amount";

bool isList(const QWidget *control)
{
    const auto *combo = qobject_cast<const QComboBox *>(control);
    return combo && !combo->isEditable();
}
} // namespace

QLineEdit *RecordEditor::textBox(int maxWidth)
{
    auto *box = new QLineEdit;
    if (maxWidth)
        box->setMaximumWidth(maxWidth);
    return box;
}

RecordEditor::RecordEditor(Workspace *main, QWidget *parent) : MdiChild(main, parent)
{
    connect(&madoPrimaryRS, &Recordset::moveComplete, this, &RecordEditor::moveComplete);
}

void RecordEditor::guard(const char *procedure, const std::function<void()> &body)
{
    basErrorHandler::Guard(procedurePrefix() + QLatin1Char('.') + QLatin1String(procedure), body);
}

// ---- building the window --------------------------------------------------

void RecordEditor::buildFrame()
{
    auto *root = new QVBoxLayout(this);
    root->setContentsMargins(10, 10, 10, 8);
    root->setSpacing(10);

    if (hasClient()) {
        auto *header = new QFrame(this);
        header->setFrameShape(QFrame::StyledPanel);
        auto *grid = new QGridLayout(header);
        grid->setHorizontalSpacing(8);
        auto box = [&](const char *name, const QString &caption, int column, int width) {
            auto *edit = new QLineEdit(header);
            edit->setObjectName(QLatin1String(name));
            edit->setReadOnly(true);
            edit->setFocusPolicy(Qt::NoFocus);
            edit->setMinimumWidth(width);
            auto *lbl = new QLabel(caption, header);
            lbl->setBuddy(edit);
            grid->addWidget(lbl, 0, column);
            grid->addWidget(edit, 0, column + 1);
            return edit;
        };
        txtClientName = box("txtClientName", QStringLiteral("Client Name: "), 0, 200);
        txtClientSSN = box("txtClientSSN", QStringLiteral("Social Security No: "), 2, 95);
        txtClientDLN = box("txtClientDLN", QStringLiteral("Driver's License No: "), 4, 110);
        grid->setColumnStretch(1, 3);
        grid->setColumnStretch(3, 1);
        grid->setColumnStretch(5, 1);
        root->addWidget(header);
    }

    auto *fields = new QWidget(this);
    m_fieldGrid = new QGridLayout(fields);
    m_fieldGrid->setContentsMargins(0, 0, 0, 0);
    m_fieldGrid->setHorizontalSpacing(8);
    m_fieldGrid->setVerticalSpacing(6);
    root->addWidget(fields, 1);

    auto *strip = new QHBoxLayout;
    strip->setSpacing(4);
    auto button = [&](const char *name, QStyle::StandardPixmap icon, const QString &text, const QString &tip) {
        auto *b = new QPushButton(this);
        b->setObjectName(QLatin1String(name));
        if (text.isEmpty())
            b->setIcon(style()->standardIcon(icon));
        else
            b->setText(text);
        b->setToolTip(tip);
        b->setFocusPolicy(Qt::TabFocus);   // a click leaves the focus (and its checks) where it is
        b->setAutoDefault(false);
        return b;
    };
    cmdFirst = button("cmdFirst", QStyle::SP_MediaSkipBackward, {}, QStringLiteral("Go to the first record."));
    cmdPrevious = button("cmdPrevious", QStyle::SP_MediaSeekBackward, {}, QStringLiteral("Go to the previous record."));
    cmdNext = button("cmdNext", QStyle::SP_MediaSeekForward, {}, QStringLiteral("Go to the next record."));
    cmdLast = button("cmdLast", QStyle::SP_MediaSkipForward, {}, QStringLiteral("Go to the last record."));
    cmdAdd = button("cmdAdd", QStyle::SP_FileIcon, QStringLiteral("&Add"), QStringLiteral("Add a new record."));
    lblStatus = new QLabel(this);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->setFrameShape(QFrame::StyledPanel);
    lblStatus->setFrameShadow(QFrame::Sunken);
    lblStatus->setAlignment(Qt::AlignCenter);
    lblStatus->setMinimumWidth(220);
    strip->addWidget(cmdFirst);
    strip->addWidget(cmdPrevious);
    strip->addWidget(lblStatus, 1);
    strip->addWidget(cmdNext);
    strip->addWidget(cmdLast);
    strip->addSpacing(12);
    strip->addWidget(cmdAdd);
    root->addLayout(strip);

    connect(cmdFirst, &QPushButton::clicked, this, &RecordEditor::cmdFirst_Click);
    connect(cmdPrevious, &QPushButton::clicked, this, &RecordEditor::cmdPrevious_Click);
    connect(cmdNext, &QPushButton::clicked, this, &RecordEditor::cmdNext_Click);
    connect(cmdLast, &QPushButton::clicked, this, &RecordEditor::cmdLast_Click);
    connect(cmdAdd, &QPushButton::clicked, this, &RecordEditor::cmdAdd_Click);
}

QWidget *RecordEditor::addField(QWidget *control, const char *objectName, const QString &dataField, const QString &tag, int index,
                                const QString &caption, int row, int column, int columnSpan)
{
    control->setParent(m_fieldGrid->parentWidget());
    control->setObjectName(QLatin1String(objectName));
    control->setProperty("DataField", dataField);
    control->setProperty("Tag", tag);
    control->setProperty("Index", index);
    auto *lbl = new QLabel(caption, m_fieldGrid->parentWidget());
    lbl->setObjectName(QStringLiteral("lblLabels"));
    lbl->setProperty("Index", index);
    lbl->setBuddy(control);
    const bool tall = qobject_cast<QPlainTextEdit *>(control) != nullptr;
    lbl->setAlignment(Qt::AlignRight | (tall ? Qt::AlignTop : Qt::AlignVCenter));
    m_fieldGrid->addWidget(lbl, row, column * 2);
    if (isList(control) && control->maximumWidth() == QWIDGETSIZE_MAX) {
        control->setMinimumWidth(220);
        control->setMaximumWidth(360);
    }
    const Qt::Alignment align = control->maximumWidth() < QWIDGETSIZE_MAX ? Qt::AlignLeft : Qt::Alignment();
    m_fieldGrid->addWidget(control, row, column * 2 + 1, 1, columnSpan * 2 - 1, align);
    m_labels.insert(index, lbl);
    m_controls << control;
    if (auto *text = qobject_cast<QPlainTextEdit *>(control))
        text->setTabChangesFocus(true);
    connectChange(control);
    return control;
}

QLineEdit *RecordEditor::maskedBox(const QString &mask)
{
    auto *box = new QLineEdit;
    box->setInputMask(mask);
    return box;
}

void RecordEditor::markAsAmount(QLineEdit *box)
{
    box->setProperty(kAmount, true);
    box->setAlignment(Qt::AlignRight);
}

void RecordEditor::connectChange(QWidget *control)
{
    auto changed = [this, control] {
        if (m_loading)
            return;
        setDataChanged(true);
        controlChanged(control);
    };
    if (auto *edit = qobject_cast<QLineEdit *>(control))
        connect(edit, &QLineEdit::textChanged, this, changed);
    else if (auto *combo = qobject_cast<QComboBox *>(control)) {
        connect(combo, &QComboBox::currentIndexChanged, this, changed);
        if (combo->isEditable())
            connect(combo, &QComboBox::editTextChanged, this, changed);
    } else if (auto *date = qobject_cast<QDateEdit *>(control))
        connect(date, &QDateEdit::dateChanged, this, changed);
    else if (auto *text = qobject_cast<QPlainTextEdit *>(control))
        connect(text, &QPlainTextEdit::textChanged, this, changed);
    else if (auto *button = qobject_cast<QAbstractButton *>(control))
        connect(button, &QAbstractButton::toggled, this, changed);
}

QLabel *RecordEditor::label(int index) const { return m_labels.value(index); }

QWidget *RecordEditor::boundControl(const QString &dataField) const
{
    for (QWidget *c : m_controls)
        if (basTendmark::DataField(c).compare(dataField, Qt::CaseInsensitive) == 0)
            return c;
    return nullptr;
}

// ---- opening --------------------------------------------------------------

bool RecordEditor::load()
{
    m_loading = true;
    m_dataChanged = false;
    buildFrame();
    buildFields();
    m_fieldGrid->setRowStretch(m_fieldGrid->rowCount(), 1);
    for (QWidget *w : findChildren<QWidget *>())
        w->installEventFilter(this);

    bool shown = false;
    guard("Form_Load", [&] {
        populateCombos();
        MarkRequiredFields();
        if (hasClient()) {
            QStringList info;
            if (basDatabase::GetClientInfo(m_clientId, info) && info.size() >= 3) {
                txtClientName->setText(info.at(0));
                txtClientSSN->setText(info.at(1));
                txtClientDLN->setText(info.at(2));
            }
        }
        QVariantList binds;
        if (hasClient())
            binds << m_clientId.toLongLong();
        madoPrimaryRS.open(tableName(), keyColumn(), query(), binds);
        if (m_recordId.isEmpty()) {
            AddRecord();
        } else if (!madoPrimaryRS.find(m_recordId)) {
            Prompt::message(QStringLiteral("Application Error"), QStringLiteral("Error retrieving record."),
                            Prompt::Icon::Exclamation, Prompt::Ok);
            return;
        }
        DisplayRecordPosition();
        populateControls();
        shown = true;
    });
    m_dataChanged = false;
    m_loading = false;
    return shown;
}

MdiChild::Commands RecordEditor::commands() const
{
    Commands c;
    c.save = m_dataChanged;
    c.del = madoPrimaryRS.editMode() != Recordset::EditMode::Adding;
    return c;
}

void RecordEditor::setDataChanged(bool changed)
{
    m_dataChanged = changed;
    Q_EMIT commandsChanged();
}

void RecordEditor::setRecordId(const QString &id)
{
    if (!madoPrimaryRS.isOpen()) {
        m_recordId = id;
        return;
    }
    if (id.isEmpty()) {
        cmdAdd_Click();
        return;
    }
    if (id == m_recordId || !UpdateRecord())
        return;
    guard("RecordID", [&] {
        if (!madoPrimaryRS.find(id))
            Prompt::message(QStringLiteral("Application Error"), QStringLiteral("Error retrieving record."),
                            Prompt::Icon::Exclamation, Prompt::Ok);
    });
}

// ---- display --------------------------------------------------------------

void RecordEditor::MarkRequiredFields()
{
    for (QWidget *c : m_controls)
        if (basTendmark::IsRequired(c))
            if (QLabel *lbl = label(c->property("Index").toInt())) {
                QFont f = lbl->font();
                f.setBold(true);
                lbl->setFont(f);
            }
}

void RecordEditor::DisplayRecordPosition()
{
    // Off a row (also while adding) the label and buttons keep what they showed.
    if (madoPrimaryRS.editMode() == Recordset::EditMode::Adding || madoPrimaryRS.bof() || madoPrimaryRS.eof())
        return;
    const int count = madoPrimaryRS.recordCount();
    const int position = madoPrimaryRS.absolutePosition();
    lblStatus->setText(QStringLiteral("Record: %1 of %2     ID: %3").arg(position).arg(count).arg(m_recordId));
    cmdFirst->setEnabled(position != 1);
    cmdPrevious->setEnabled(position != 1);
    cmdNext->setEnabled(position != count);
    cmdLast->setEnabled(position != count);
}

void RecordEditor::populateControls()
{
    const bool wasLoading = m_loading;
    m_loading = true;
    basTendmark::PopulateDataControls(m_controls, madoPrimaryRS);
    for (QWidget *c : m_controls)
        if (c->property(kAmount).toBool())
            formatAmount(static_cast<QLineEdit *>(c));
    afterDisplay();
    m_loading = wasLoading;
}

void RecordEditor::moveComplete()
{
    if (m_loading || !madoPrimaryRS.onRow() || madoPrimaryRS.editMode() == Recordset::EditMode::Adding)
        return;
    m_recordId = madoPrimaryRS.key().toString();
    m_loading = true;
    DisplayRecordPosition();
    populateControls();
    setDataChanged(false);
    m_loading = false;
}

// ---- values and checks ----------------------------------------------------

QString RecordEditor::GetControlValue(QWidget *control) const
{
    if (control->property(kAmount).toBool()) {
        const QString text = static_cast<QLineEdit *>(control)->text().trimmed();
        if (text.isEmpty())
            return {};
        const auto cents = Money::parse(text);
        return cents ? Money::plain(*cents) : text;
    }
    return basTendmark::GetControlValue(control, madoPrimaryRS.field(basTendmark::DataField(control)));
}

bool RecordEditor::refuse(QWidget *control, const QString &title, const QString &text)
{
    Prompt::message(title, text, Prompt::Icon::Exclamation, Prompt::Ok);
    control->setFocus();
    // Leaving a field hands the focus on after this returns: take it back then.
    QTimer::singleShot(0, control, [control] { control->setFocus(); });
    return false;
}

bool RecordEditor::checkField(QWidget *control, const QString &column, const QString &value, const QString &)
{
    if (!dateColumn().isEmpty() && column == dateColumn()) {
        const QDate date = basTendmark::ParseDate(value);
        if (date.isValid() && date > QDate::currentDate())
            return refuse(control, QStringLiteral("Data Entry Error"), QStringLiteral("Future date not allowed."));
    }
    return true;
}

bool RecordEditor::validateOnLeave(QWidget *control)
{
    if (isList(control))
        return true;
    const QString column = basTendmark::DataField(control);
    const QString value = GetControlValue(control);
    if (!dateColumn().isEmpty() && column == dateColumn()) {
        const QDate date = basTendmark::ParseDate(value);
        if (date.isValid() && date > QDate::currentDate())
            return refuse(control, QStringLiteral("Data Entry Error"), QStringLiteral("Future date not allowed."));
    }
    if (!value.isEmpty()) {
        QString message;
        if (!basDatabase::FieldIsValid(madoPrimaryRS.field(column), value, message)) {
            const QLabel *lbl = label(control->property("Index").toInt());
            return refuse(control, QStringLiteral("Data Entry Error"), (lbl ? lbl->text() : column) + message);
        }
    }
    if (control->property(kAmount).toBool())
        formatAmount(static_cast<QLineEdit *>(control));
    return true;
}

void RecordEditor::formatAmount(QLineEdit *box)
{
    const auto cents = Money::parse(box->text());
    if (!cents || box->text().trimmed().isEmpty())
        return;
    const bool wasLoading = m_loading;
    m_loading = true;
    box->setText(Money::format(*cents));
    m_loading = wasLoading;
}

bool RecordEditor::amountKeyAccepted(QLineEdit *box, const QString &text) const
{
    if (text.size() != 1)
        return false;
    const QChar c = text.at(0);
    if (c.isDigit())
        return c.unicode() < 128;
    if (c == QLatin1Char('.'))
        return !box->text().contains(QLatin1Char('.'));
    return c == QLatin1Char('\r') || c == QLatin1Char('\n') || c == QLatin1Char('\b');
}

bool RecordEditor::UpdateFields()
{
    if (!m_dataChanged)
        return true;
    for (QWidget *control : std::as_const(m_controls)) {
        const QString column = basTendmark::DataField(control);
        const QString value = GetControlValue(control);
        const QLabel *lbl = label(control->property("Index").toInt());
        const QString caption = lbl ? lbl->text() : column;
        if (basTendmark::IsRequired(control) && value.isEmpty())
            return refuse(control, QStringLiteral("Required Field Empty"), caption + QStringLiteral(" is required."));
        if (!checkField(control, column, value, caption))
            return false;
        if (value == basTendmark::GetFieldValue(madoPrimaryRS, column))
            continue;
        if (!value.isEmpty() && !isList(control)) {
            QString message;
            if (!basDatabase::FieldIsValid(madoPrimaryRS.field(column), value, message))
                return refuse(control, QStringLiteral("Data Entry Error"), caption + message);
        }
        if (!basDatabase::UpdateDataField(madoPrimaryRS, column, value))
            return false;
    }
    return true;
}

// ---- saving, adding, moving ----------------------------------------------

bool RecordEditor::UpdateRecord()
{
    bool ok = false;
    guard("UpdateRecord", [&] {
        const bool adding = madoPrimaryRS.editMode() == Recordset::EditMode::Adding;
        if (m_dataChanged) {
            if (!UpdateFields() || !confirmCommit())
                return;
            madoPrimaryRS.update();
            m_loading = true;
            if (adding) {
                m_recordId = madoPrimaryRS.key().toString();
            }
            DisplayRecordPosition();
            populateControls();
            setDataChanged(false);
            m_loading = false;
            announceSaved();
            afterSave();
        } else if (adding && madoPrimaryRS.recordCount() > 0) {
            // An untouched new row is dropped; with no other row it stays as the blank record.
            madoPrimaryRS.cancelUpdate();
            Q_EMIT commandsChanged();
        } else if (madoPrimaryRS.editMode() == Recordset::EditMode::Editing) {
            madoPrimaryRS.cancelUpdate();
        }
        ok = true;
    });
    m_loading = false;
    return ok;
}

void RecordEditor::announceSaved()
{
    if (hasClient())
        announceClientRecordsChanged(m_clientId);
}

bool RecordEditor::SaveCurrentRecord() { return !m_dataChanged || UpdateRecord(); }

void RecordEditor::AddRecord()
{
    madoPrimaryRS.addNew();
    if (hasClient())
        madoPrimaryRS.setValue(QStringLiteral("ClientID"), m_clientId.toLongLong());
    if (!dateColumn().isEmpty())
        madoPrimaryRS.setValue(dateColumn(), QDate::currentDate().toString(Qt::ISODate));
    m_recordId.clear();
    Q_EMIT commandsChanged();
}

void RecordEditor::cmdAdd_Click()
{
    if (!m_dataChanged && madoPrimaryRS.editMode() == Recordset::EditMode::Adding)
        return;
    if (!UpdateRecord())
        return;
    guard("cmdAdd_Click", [&] {
        m_loading = true;
        AddRecord();
        DisplayRecordPosition();
        populateControls();
        setDataChanged(false);
        if (!m_controls.isEmpty())
            m_controls.first()->setFocus();
    });
    m_loading = false;
}

void RecordEditor::cmdFirst_Click()
{
    if (!UpdateRecord() || madoPrimaryRS.recordCount() == 0)
        return;
    guard("cmdFirst_Click", [&] { madoPrimaryRS.moveFirst(); });
}

void RecordEditor::cmdLast_Click()
{
    if (!UpdateRecord() || madoPrimaryRS.recordCount() == 0)
        return;
    guard("cmdLast_Click", [&] { madoPrimaryRS.moveLast(); });
}

void RecordEditor::cmdNext_Click()
{
    if (!UpdateRecord() || madoPrimaryRS.recordCount() == 0)
        return;
    guard("cmdNext_Click", [&] {
        if (!madoPrimaryRS.eof())
            madoPrimaryRS.moveNext();
        if (madoPrimaryRS.eof()) {
            QApplication::beep();
            madoPrimaryRS.moveLast();
        }
    });
}

void RecordEditor::cmdPrevious_Click()
{
    if (!UpdateRecord() || madoPrimaryRS.recordCount() == 0)
        return;
    guard("cmdPrevious_Click", [&] {
        if (!madoPrimaryRS.bof())
            madoPrimaryRS.movePrevious();
        if (madoPrimaryRS.bof()) {
            QApplication::beep();
            madoPrimaryRS.moveFirst();
        }
    });
}

// ---- delete and close -----------------------------------------------------

void RecordEditor::DeleteCurrentRecord()
{
    if (m_recordId.isEmpty() || madoPrimaryRS.editMode() == Recordset::EditMode::Adding)
        return;
    guard("DeleteCurrentRecord", [&] {
        const DeleteTexts texts = deleteTexts();
        if (Prompt::message(texts.questionTitle, texts.question, Prompt::Icon::Question, Prompt::Yes | Prompt::No) != Prompt::Yes)
            return;
        if (!basDatabase::DeleteItemFromTable(tableName(), keyColumn(), m_recordId))
            return;
        Prompt::message(texts.doneTitle, texts.done, Prompt::Icon::None, Prompt::Ok);
        m_loading = true;
        madoPrimaryRS.requery();
        if (madoPrimaryRS.recordCount() > 0) {
            if (madoPrimaryRS.eof())
                madoPrimaryRS.moveLast();
            else if (madoPrimaryRS.bof())
                madoPrimaryRS.moveFirst();
            m_recordId = madoPrimaryRS.key().toString();
        } else {
            AddRecord();
        }
        DisplayRecordPosition();
        populateControls();
        setDataChanged(false);
        announceSaved();
    });
    m_loading = false;
}

bool RecordEditor::queryUnload()
{
    if (!m_dataChanged)
        return true;
    switch (Prompt::message(QStringLiteral("Save Record?"), QStringLiteral("Current record has changed. Do you want to save it?"),
                            Prompt::Icon::Question, Prompt::Yes | Prompt::No | Prompt::Cancel)) {
    case Prompt::Yes:
        return UpdateRecord();
    case Prompt::No:
        return true;
    default:
        return false;
    }
}

bool RecordEditor::reopen(const QString &sql, const QVariantList &binds)
{
    bool ok = false;
    guard("ExecuteSQL", [&] {
        m_loading = true;
        madoPrimaryRS.open(tableName(), keyColumn(), sql, binds);
        ok = true;
    });
    m_loading = false;
    return ok;
}

// ---- keys and focus -------------------------------------------------------

bool RecordEditor::eventFilter(QObject *watched, QEvent *event)
{
    auto *widget = qobject_cast<QWidget *>(watched);
    switch (event->type()) {
    case QEvent::KeyPress: {
        auto *key = static_cast<QKeyEvent *>(event);
        const bool ctrl = (key->modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
        switch (key->key()) {
        case Qt::Key_Escape:
            closeWindow();
            return true;
        case Qt::Key_PageUp:
            ctrl ? cmdFirst_Click() : cmdPrevious_Click();
            return true;
        case Qt::Key_PageDown:
            ctrl ? cmdLast_Click() : cmdNext_Click();
            return true;
        default:
            break;
        }
        if (widget && widget->property(kAmount).toBool() && !key->text().isEmpty()
            && !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) && key->text().at(0).isPrint())
            return !amountKeyAccepted(static_cast<QLineEdit *>(widget), key->text());
        break;
    }
    case QEvent::FocusIn:
        if (auto *edit = qobject_cast<QLineEdit *>(watched); edit && m_controls.contains(edit)) {
            if (edit->property(kAmount).toBool() && edit->text().contains(QLatin1Char('$'))) {
                const bool wasLoading = m_loading;
                m_loading = true;
                edit->setText(edit->text().remove(QLatin1Char('$')));
                m_loading = wasLoading;
            }
            QTimer::singleShot(0, edit, &QLineEdit::selectAll);
        } else if (auto *text = qobject_cast<QPlainTextEdit *>(watched); text && m_controls.contains(text)) {
            QTimer::singleShot(0, text, &QPlainTextEdit::selectAll);
        }
        break;
    case QEvent::FocusOut: {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (widget && m_controls.contains(widget) && !m_validating && !m_loading && reason != Qt::ActiveWindowFocusReason
            && reason != Qt::PopupFocusReason && madoPrimaryRS.isOpen()) {
            m_validating = true;
            validateOnLeave(widget);
            m_validating = false;
        }
        break;
    }
    default:
        break;
    }
    return MdiChild::eventFilter(watched, event);
}
