#include "frmVolunteer.h"

#include "DataBinding.h"
#include "Prompt.h"
#include "basDatabase.h"
#include "RecordQueries.h"
#include "SqlText.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPlainTextEdit>

frmVolunteer::frmVolunteer(Workspace *main, QWidget *parent) : RecordEditor(main, parent)
{
    setObjectName(QStringLiteral("frmVolunteer"));
    setWindowTitle(tr("Volunteers"));
}

QString frmVolunteer::query() const
{
    const QString rows = m_sql.isEmpty() ? RecordQueries::volunteersByName() : m_sql;
    if (m_sortField.isEmpty())
        return rows;
    return QStringLiteral("SELECT * FROM (%1) ORDER BY %2 COLLATE NOCASE %3, LastName, FirstName, VolunteerID")
        .arg(rows, SqlText::id(m_sortField), m_sortOrder == Qt::AscendingOrder ? QStringLiteral("ASC") : QStringLiteral("DESC"));
}

// The field that holds the focus, or the one that last held it; the last name before any.
QString frmVolunteer::sortField() const
{
    for (const QWidget *w = focusWidget(); w && w != this; w = w->parentWidget())
        if (const QString field = basTendmark::DataField(w); !field.isEmpty() && boundControl(field) == w)
            return field;
    return QStringLiteral("LastName");
}

void frmVolunteer::SortColumn(Qt::SortOrder order)
{
    const QString field = sortField();
    if (!UpdateRecord())
        return;
    const QString current = VolunteerID();
    m_sortField = field;
    m_sortOrder = order;
    if (!reopen(query(), {}) || madoPrimaryRS.recordCount() == 0)
        return;
    setLoading(true);
    if (current.isEmpty() || !madoPrimaryRS.find(current))
        madoPrimaryRS.moveFirst();
    takeKeyOfRow();
    DisplayRecordPosition();
    populateControls();
    setDataChanged(false);
    setLoading(false);
}

void frmVolunteer::setSQL(const QString &sql)
{
    // The window's own order holds whatever order the statement has.
    m_sql = sql.isEmpty() ? QString() : RecordQueries::volunteersByName(sql);
    setWindowTitle(sql.isEmpty() ? tr("Volunteers") : tr("Volunteers (Filter Applied)"));
}

void frmVolunteer::ExecuteSQL()
{
    if (!UpdateRecord() || !reopen(query(), {}))
        return;
    setLoading(true);
    if (madoPrimaryRS.recordCount() == 0) {
        AddRecord();
        Prompt::message(tr("No Volunteer Records Found"), tr("No records were found that matched the specified criteria."),
                        Prompt::Icon::Exclamation, Prompt::Ok);
    } else {
        madoPrimaryRS.moveFirst();
        takeKeyOfRow();
    }
    DisplayRecordPosition();
    populateControls();
    setDataChanged(false);
    setLoading(false);
}

MdiChild::Commands frmVolunteer::commands() const
{
    Commands c = RecordEditor::commands();
    c.filter = true;
    c.sortAscending = madoPrimaryRS.recordCount() > 0;
    c.sortDescending = c.sortAscending;
    c.searchBar = true;
    return c;
}

void frmVolunteer::buildFields()
{
    const QString &req = kRequiredTag;
    const QString &opt = kOptionalTag;
    auto text = [](int maxWidth = 0) { return textBox(maxWidth); };
    auto phone = [] {
        QLineEdit *box = maskedBox(QStringLiteral("(999) 999-9999"));
        box->setMaximumWidth(130);
        return box;
    };
    auto *state = new QComboBox;
    state->setMaximumWidth(80);
    state->setMinimumWidth(70);
    auto *zip = new QComboBox;
    zip->setEditable(true);
    zip->setInsertPolicy(QComboBox::NoInsert);
    zip->setMaximumWidth(120);
    zip->setMinimumWidth(100);
    QLineEdit *party = maskedBox(QStringLiteral("999"));
    party->setMaximumWidth(50);

    addField(text(), "txtData", QStringLiteral("LastName"), req, 0, tr("Last Name"), 0, 0);
    addField(text(), "txtData", QStringLiteral("FirstName"), req, 1, tr("First Name"), 1, 0);
    addField(initialBox(), "txtData", QStringLiteral("MiddleInitial"), opt, 2, tr("M.I."), 2, 0);
    addField(text(), "txtData", QStringLiteral("Address"), opt, 3, tr("Address"), 3, 0);
    addField(text(), "txtData", QStringLiteral("City"), opt, 4, tr("City"), 4, 0);
    addField(state, "cboData", QStringLiteral("State"), opt, 5, tr("State"), 5, 0);
    addField(zip, "cboData", QStringLiteral("ZipCode"), opt, 6, tr("Zip Code"), 6, 0);
    addField(phone(), "mskData", QStringLiteral("HomePhone"), opt, 7, tr("Home Phone"), 0, 1);
    addField(phone(), "mskData", QStringLiteral("WorkPhone"), opt, 8, tr("Phone"), 1, 1);
    addField(phone(), "mskData", QStringLiteral("MobilePhone"), opt, 9, tr("Mobile Phone"), 2, 1);
    addField(phone(), "mskData", QStringLiteral("Fax"), opt, 10, tr("Fax"), 3, 1);
    addField(text(), "txtData", QStringLiteral("EmailAddress"), opt, 11, tr("E-Mail Address"), 4, 1);
    addField(text(), "txtData", QStringLiteral("EmergencyContact"), opt, 12, tr("Emergency Contact"), 5, 1);
    addField(phone(), "mskData", QStringLiteral("EmergencyContactPhone"), opt, 13, tr("Emergency Phone"), 6, 1);
    addField(party, "mskData", QStringLiteral("NumberInParty"), opt, 14, tr("How many in your party?"), 7, 0);
    addField(text(), "txtData", QStringLiteral("Affiliation"), opt, 15, tr("Affiliation"), 7, 1);
    addField(new QPlainTextEdit, "txtData", QStringLiteral("Comments"), QStringLiteral("Ex_All"), 16, tr("Comments"), 8, 0, 2);
    fieldGrid()->setColumnStretch(1, 1);
    fieldGrid()->setColumnStretch(3, 1);
    fieldGrid()->setColumnMinimumWidth(2, 120);
}

void frmVolunteer::populateCombos()
{
    basTendmark::PopulateDataCombo(qobject_cast<QComboBox *>(boundControl(QStringLiteral("State"))), QStringLiteral("States"),
                                   QStringLiteral("StateID"), QStringLiteral("StateCode"));
    basTendmark::PopulateZipCombo(qobject_cast<QComboBox *>(boundControl(QStringLiteral("ZipCode"))));
}

// A zip code the table knows fills in its city and state.
void frmVolunteer::controlChanged(QWidget *control)
{
    if (basTendmark::DataField(control) != QLatin1String("ZipCode"))
        return;
    QString city, state;
    if (!basDatabase::GetCityStateFromZip(qobject_cast<QComboBox *>(control)->currentText(), city, state) || city.isEmpty())
        return;
    qobject_cast<QLineEdit *>(boundControl(QStringLiteral("City")))->setText(city);
    auto *stateList = qobject_cast<QComboBox *>(boundControl(QStringLiteral("State")));
    stateList->setCurrentIndex(stateList->findText(state));
}

RecordEditor::DeleteTexts frmVolunteer::deleteTexts() const
{
    auto value = [this](const char *column) { return basTendmark::GetFieldValue(madoPrimaryRS, QLatin1String(column)); };
    QString name = value("LastName") + QStringLiteral(", ") + value("FirstName");
    if (!value("MiddleInitial").isEmpty())
        name += QLatin1Char(' ') + value("MiddleInitial");
    return {tr("Are you sure you want to delete volunteer '%1'?").arg(name), tr("Delete Volunteer?"),
            tr("Volunteer '%1' deleted.").arg(name), tr("Delete Volunteer")};
}
