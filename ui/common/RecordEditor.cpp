#include "RecordEditor.h"

#include "AmountBox.h"
#include "DataBinding.h"
#include "Prompt.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basTendmark.h"

#include <QComboBox>
#include <QDateEdit>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>
#include <QVBoxLayout>

namespace {

bool isList(const QWidget *control)
{
    const auto *combo = qobject_cast<const QComboBox *>(control);
    return combo && !combo->isEditable();
}
}   // namespace

QLineEdit *RecordEditor::textBox(int maxWidth)
{
    auto *box = new QLineEdit;
    if (maxWidth)
        box->setMaximumWidth(maxWidth);
    return box;
}

QLineEdit *RecordEditor::initialBox()
{
    QLineEdit *box = textBox(40);
    box->setMaxLength(1);
    return box;
}

RecordEditor::RecordEditor(Workspace *main, QWidget *parent) : MdiChild(main, parent), m_fields(new BoundFields(this))
{
    connect(&madoPrimaryRS, &Recordset::moveComplete, this, &RecordEditor::moveComplete);
    connect(m_fields, &BoundFields::edited, this, [this](QWidget *control) {
        setDataChanged(true);
        controlChanged(control);
    });
    m_fields->setFieldOf([this](const QWidget *c) { return basDatabase::Field(tableName(), basTendmark::DataField(c)); });
    m_fields->setLeaveCheck([this](QWidget *control) {
        if (madoPrimaryRS.isOpen())
            validateOnLeave(control);
    });
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
        txtClientName = box("txtClientName", tr("Client Name: "), 0, 200);
        txtClientSSN = box("txtClientSSN", tr("Social Security No: "), 2, 95);
        txtClientDLN = box("txtClientDLN", tr("Driver's License No: "), 4, 110);
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

    m_strip = new NavigationStrip(this, true);
    root->addWidget(m_strip);
    connect(m_strip, &NavigationStrip::moveRequested, this, &RecordEditor::navigate);
    connect(m_strip, &NavigationStrip::addRequested, this, &RecordEditor::cmdAdd_Click);
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
    if (auto *text = qobject_cast<QPlainTextEdit *>(control))
        text->setTabChangesFocus(true);
    m_fields->add(control, lbl);
    return control;
}

QLineEdit *RecordEditor::maskedBox(const QString &mask)
{
    auto *box = new QLineEdit;
    box->setInputMask(mask);
    return box;
}

QLabel *RecordEditor::label(int index) const
{
    return m_labels.value(index);
}

// ---- opening --------------------------------------------------------------

bool RecordEditor::load()
{
    setLoading(true);
    m_dataChanged = false;
    buildFrame();
    buildFields();
    m_fieldGrid->setRowStretch(m_fieldGrid->rowCount(), 1);
    m_strip->watchKeys();

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
            Prompt::message(tr("Application Error"), tr("Error retrieving record."), Prompt::Icon::Exclamation, Prompt::Ok);
            return;
        }
        DisplayRecordPosition();
        populateControls();
        shown = true;
    });
    m_dataChanged = false;
    setLoading(false);
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
            Prompt::message(tr("Application Error"), tr("Error retrieving record."), Prompt::Icon::Exclamation, Prompt::Ok);
    });
}

// ---- display --------------------------------------------------------------

void RecordEditor::MarkRequiredFields()
{
    for (QWidget *c : m_fields->controls())
        if (basTendmark::IsRequired(c))
            if (QLabel *lbl = label(c->property("Index").toInt())) {
                QFont f = lbl->font();
                f.setBold(true);
                lbl->setFont(f);
            }
}

void RecordEditor::DisplayRecordPosition()
{
    // With no rows at all, or before the first or after the last, the strip keeps what it showed.
    if (madoPrimaryRS.recordCount() == 0 || madoPrimaryRS.bof() || madoPrimaryRS.eof())
        return;
    m_strip->showPosition(madoPrimaryRS.absolutePosition(), madoPrimaryRS.recordCount(), m_recordId);
}

void RecordEditor::populateControls()
{
    const bool wasLoading = isLoading();
    setLoading(true);
    m_fields->fill(madoPrimaryRS);
    afterDisplay();
    setLoading(wasLoading);
}

void RecordEditor::moveComplete()
{
    if (isLoading() || !madoPrimaryRS.onRow() || madoPrimaryRS.editMode() == Recordset::EditMode::Adding)
        return;
    m_recordId = madoPrimaryRS.key().toString();
    setLoading(true);
    DisplayRecordPosition();
    populateControls();
    setDataChanged(false);
    setLoading(false);
}

// ---- values and checks ----------------------------------------------------

QString RecordEditor::GetControlValue(QWidget *control) const
{
    return m_fields->value(control, madoPrimaryRS);
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
            return refuse(control, tr("Data Entry Error"), tr("Future date not allowed."));
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
            return refuse(control, tr("Data Entry Error"), tr("Future date not allowed."));
    }
    if (!value.isEmpty()) {
        QString message;
        if (!basDatabase::FieldIsValid(madoPrimaryRS.field(column), value, message)) {
            const QLabel *lbl = label(control->property("Index").toInt());
            return refuse(control, tr("Data Entry Error"), (lbl ? lbl->text() : column) + message);
        }
    }
    if (auto *amount = qobject_cast<AmountBox *>(control))
        amount->showFormatted();
    return true;
}

bool RecordEditor::UpdateFields()
{
    if (!m_dataChanged)
        return true;
    for (QWidget *control : m_fields->controls()) {
        const QString column = basTendmark::DataField(control);
        const QString value = GetControlValue(control);
        const QLabel *lbl = label(control->property("Index").toInt());
        const QString caption = lbl ? lbl->text() : column;
        if (basTendmark::IsRequired(control) && value.isEmpty())
            return refuse(control, tr("Required Field Empty"), tr("%1 is required.").arg(caption));
        if (!checkField(control, column, value, caption))
            return false;
        if (value == basTendmark::GetFieldValue(madoPrimaryRS, column))
            continue;
        if (!value.isEmpty() && !isList(control)) {
            QString message;
            if (!basDatabase::FieldIsValid(madoPrimaryRS.field(column), value, message))
                return refuse(control, tr("Data Entry Error"), caption + message);
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
            setLoading(true);
            if (adding) {
                madoPrimaryRS.resync();   // the new record takes its place in the order
                m_recordId = madoPrimaryRS.key().toString();
            }
            DisplayRecordPosition();
            populateControls();
            setDataChanged(false);
            setLoading(false);
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
    setLoading(false);
    return ok;
}

void RecordEditor::announceSaved()
{
    if (hasClient())
        announceClientRecordsChanged(m_clientId);
}

bool RecordEditor::SaveCurrentRecord()
{
    return !m_dataChanged || UpdateRecord();
}

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
        setLoading(true);
        AddRecord();
        DisplayRecordPosition();
        populateControls();
        setDataChanged(false);
        if (!m_fields->controls().isEmpty())
            m_fields->controls().first()->setFocus();
    });
    setLoading(false);
}

void RecordEditor::navigate(NavigationStrip::Move move)
{
    static const char *const names[] = {"cmdFirst_Click", "cmdPrevious_Click", "cmdNext_Click", "cmdLast_Click"};
    if (!UpdateRecord() || madoPrimaryRS.recordCount() == 0)
        return;
    guard(names[int(move)], [&] { NavigationStrip::step(madoPrimaryRS, move); });
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
        setLoading(true);
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
    setLoading(false);
}

bool RecordEditor::queryUnload()
{
    if (!m_dataChanged)
        return true;
    switch (Prompt::message(tr("Save Record?"), tr("Current record has changed. Do you want to save it?"), Prompt::Icon::Question,
                            Prompt::Yes | Prompt::No | Prompt::Cancel)) {
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
        setLoading(true);
        madoPrimaryRS.open(tableName(), keyColumn(), sql, binds);
        ok = true;
    });
    setLoading(false);
    return ok;
}

void RecordEditor::populateCombos()
{
    basTendmark::PopulateLookupCombos(boundControls(), tableName());
}
