#include "frmFamilyMember.h"

#include "DataBinding.h"
#include "basDatabase.h"
#include "basTendmark.h"
#include "RecordQueries.h"

#include <QComboBox>
#include <QDate>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

frmFamilyMember::frmFamilyMember(Workspace *main, QWidget *parent) : RecordEditor(main, parent)
{
    setObjectName(QStringLiteral("frmFamilyMember"));
    setWindowTitle(tr("Family Member"));
}

QString frmFamilyMember::query() const
{
    return RecordQueries::familyMembers();
}

void frmFamilyMember::buildFields()
{
    const QString &req = kRequiredTag;
    const QString &opt = kOptionalTag;
    auto text = [](int maxWidth = 0) { return textBox(maxWidth); };
    auto masked = [](const QString &mask, int width) {
        QLineEdit *box = maskedBox(mask);
        box->setMaximumWidth(width);
        return box;
    };
    auto zip = new QComboBox;
    zip->setEditable(true);
    zip->setInsertPolicy(QComboBox::NoInsert);

    auto list = [](int characters) {
        auto *box = new QComboBox;
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(characters);
        box->setMaximumWidth(box->minimumSizeHint().width());
        return box;
    };

    // Left column: the person; right column: the employer.
    addField(list(24), "cboData", QStringLiteral("RelationshipID"), req, 0, tr("Relationship"), 0, 0);
    addField(text(), "txtData", QStringLiteral("LastName"), req, 1, tr("Last Name"), 1, 0);
    addField(text(), "txtData", QStringLiteral("FirstName"), req, 2, tr("First Name"), 2, 0);
    addField(initialBox(), "txtData", QStringLiteral("MiddleInitial"), opt, 3, tr("M.I."), 3, 0);
    addField(masked(QStringLiteral("999-99-9999"), 110), "mskData", QStringLiteral("SocialSecurityNumber"), opt, 4,
             tr("Social Security No"), 4, 0);
    addField(text(), "txtData", QStringLiteral("DriversLicenseNumber"), opt, 5, tr("Drivers License No"), 5, 0);
    addField(masked(QStringLiteral("99/99/9999"), 110), "mskData", QStringLiteral("BirthDate"), opt, 6, tr("Birth Date"), 6, 0);
    addField(list(3), "cboData", QStringLiteral("Gender"), opt, 7, tr("Gender"), 7, 0);
    addField(list(24), "cboData", QStringLiteral("EthnicOriginID"), opt, 8, tr("Ethnic Origin"), 8, 0);
    addField(list(24), "cboData", QStringLiteral("EducationLevelID"), opt, 9, tr("Education Level"), 9, 0);
    addField(masked(QStringLiteral("(999) 999-9999"), 130), "mskData", QStringLiteral("MobilePhone"), opt, 10, tr("Mobile Phone"), 0, 1);
    addField(masked(QStringLiteral("(999) 999-9999"), 130), "mskData", QStringLiteral("WorkPhone"), opt, 11, tr("Work Phone"), 1, 1);
    addField(text(), "txtData", QStringLiteral("EmployerName"), opt, 12, tr("Employer Name"), 2, 1);
    addField(text(), "txtData", QStringLiteral("EmployerAddress"), opt, 13, tr("Address"), 3, 1);
    addField(text(), "txtData", QStringLiteral("EmployerCity"), opt, 14, tr("City"), 4, 1);
    auto *state = new QComboBox;
    state->setMaximumWidth(80);
    state->setMinimumWidth(70);
    addField(state, "cboData", QStringLiteral("EmployerState"), opt, 15, tr("State"), 5, 1);
    zip->setMaximumWidth(120);
    zip->setMinimumWidth(100);
    addField(zip, "cboData", QStringLiteral("EmployerZip"), opt, 16, tr("Zip Code"), 6, 1);
    QWidget *years
        = addField(masked(QStringLiteral("999"), 50), "mskData", QStringLiteral("EmployerDurationYears"), opt, 17, tr("yrs"), 7, 1);
    QWidget *months
        = addField(masked(QStringLiteral("999"), 50), "mskData", QStringLiteral("EmployerDurationMonths"), opt, 18, tr("months"), 7, 1);
    // Both boxes on one line, each followed by its unit.
    auto *duration = new QHBoxLayout;
    for (QWidget *box : {years, months}) {
        QLabel *unit = label(box->property("Index").toInt());
        fieldGrid()->removeWidget(box);
        fieldGrid()->removeWidget(unit);
        unit->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        unit->setIndent(4);
        duration->addWidget(box);
        duration->addWidget(unit);
        duration->addSpacing(8);
    }
    duration->addStretch(1);
    auto *durationLabel = new QLabel(tr("How long with this employer?"), fieldGrid()->parentWidget());
    durationLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    durationLabel->setBuddy(years);
    fieldGrid()->addWidget(durationLabel, 7, 2);
    fieldGrid()->addLayout(duration, 7, 3);
    addField(new QPlainTextEdit, "txtData", QStringLiteral("Comments"), QStringLiteral("Ex_All"), 19, tr("Comments"), 10, 0, 2);
    fieldGrid()->setColumnStretch(1, 1);
    fieldGrid()->setColumnStretch(3, 1);
    fieldGrid()->setColumnMinimumWidth(2, 150);
}

void frmFamilyMember::populateCombos()
{
    RecordEditor::populateCombos();
    auto fill = [this](const char *column, const char *table, const char *key, const char *text) {
        basTendmark::PopulateDataCombo(qobject_cast<QComboBox *>(boundControl(QLatin1String(column))), QLatin1String(table),
                                       QLatin1String(key), QLatin1String(text));
    };
    fill("Gender", "Gender", "GenderID", "GenderCode");
    fill("EmployerState", "States", "StateID", "StateCode");
    basTendmark::PopulateZipCombo(qobject_cast<QComboBox *>(boundControl(QStringLiteral("EmployerZip"))));
}

void frmFamilyMember::controlChanged(QWidget *control)
{
    if (basTendmark::DataField(control) == QLatin1String("EmployerZip"))
        PopulateCityState();
}

void frmFamilyMember::PopulateCityState()
{
    QWidget *zip = boundControl(QStringLiteral("EmployerZip"));
    QString city, state;
    if (!basDatabase::GetCityStateFromZip(basTendmark::GetControlValue(zip, {}), city, state))
        return;
    for (const auto &[column, value] :
         {std::pair {QStringLiteral("EmployerCity"), city}, std::pair {QStringLiteral("EmployerState"), state}})
        if (!value.isEmpty())
            basTendmark::SetControlValue(boundControl(column), madoPrimaryRS.field(column), value);
}

bool frmFamilyMember::checkField(QWidget *control, const QString &column, const QString &value, const QString &caption)
{
    // Beyond the column's own rules: no birth dates to come.
    if (value.isEmpty() || value == basTendmark::GetFieldValue(madoPrimaryRS, column))
        return true;
    QString message;
    if (!basDatabase::FieldIsValid(madoPrimaryRS.field(column), value, message))
        return true;   // the save reports the column's own rule
    if (column == QLatin1String("BirthDate") && basTendmark::ParseDate(value) > QDate::currentDate())
        return refuse(control, tr("Data Entry Error"), tr("%1 cannot be in the future.").arg(caption));
    return true;
}

RecordEditor::DeleteTexts frmFamilyMember::deleteTexts() const
{
    auto value = [this](const char *column) { return basTendmark::GetFieldValue(madoPrimaryRS, QLatin1String(column)); };
    QString name = value("LastName");
    if (!name.isEmpty())
        name += QStringLiteral(", ") + value("FirstName");
    name += QLatin1Char(' ') + value("MiddleInitial");
    return {tr("Are you sure you want to delete family member '%1'?").arg(name), tr("Delete Family Member?"),
            tr("Family member '%1' deleted.").arg(name), tr("Delete Family Member")};
}
