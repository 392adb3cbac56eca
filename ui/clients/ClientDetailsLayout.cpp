#include "frmClientDetails.h"

#include "ClientSubGrid.h"
#include "basClient.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

// How the client details window is laid out: the top pane of the client's own
// fields, the tabs of supporting details and the navigation strip.

namespace {

const QString kPhoneMask = QStringLiteral("(999) 999-9999");

QPlainTextEdit *memo(QWidget *parent, int lines)
{
    auto *edit = new QPlainTextEdit(parent);
    edit->setTabChangesFocus(true);
    edit->setMinimumHeight(edit->fontMetrics().lineSpacing() * lines + 12);
    return edit;
}

// A multi-line box that stays a few lines high inside a form.
QPlainTextEdit *shortMemo(QWidget *parent, int lines)
{
    QPlainTextEdit *edit = memo(parent, lines);
    edit->setMaximumHeight(edit->minimumHeight() + edit->fontMetrics().lineSpacing());
    return edit;
}

// Forms of the top pane keep their rows close so that the tabs get the room.
QFormLayout *compactForm(QWidget *box)
{
    auto *form = new QFormLayout(box);
    form->setContentsMargins(8, 4, 8, 6);
    form->setVerticalSpacing(4);
    return form;
}

QLineEdit *masked(QWidget *parent, const QString &mask)
{
    auto *edit = new QLineEdit(parent);
    edit->setInputMask(mask);
    edit->setMaximumWidth(edit->fontMetrics().horizontalAdvance(QLatin1Char('0')) * (int(mask.size()) + 3));
    return edit;
}

// An initial: typing stops at one letter (a longer paste is refused with the field's message).
QLineEdit *oneLetter(QLineEdit *edit)
{
    edit->setMaxLength(1);
    return edit;
}

QComboBox *dropDown(QWidget *parent, bool editable = false)
{
    auto *combo = new QComboBox(parent);
    combo->setEditable(editable);
    if (editable)
        combo->setCompleter(nullptr);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(8);
    return combo;
}

}   // namespace

void frmClientDetails::buildForm()
{
    auto *header = new QHBoxLayout;
    lblClientName = new QLabel(this);
    lblClientName->setObjectName(QStringLiteral("lblClientName"));
    QFont big = lblClientName->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.25);
    lblClientName->setFont(big);
    lblHousehold = new QLabel(this);
    lblHousehold->setObjectName(QStringLiteral("lblHousehold"));
    lblHousehold->setToolTip(tr("The number of people in the household and the date of the last food service."));
    header->addWidget(lblClientName);
    header->addSpacing(24);
    header->addWidget(lblHousehold);
    header->addStretch(1);

    auto *splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName(QStringLiteral("splitter"));
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(buildTopPane());
    splitter->addWidget(buildTabs());
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);

    m_strip = new NavigationStrip(this, true);
    connect(m_strip, &NavigationStrip::moveRequested, this, &frmClientDetails::navigate);
    connect(m_strip, &NavigationStrip::addRequested, this, &frmClientDetails::cmdAdd_Click);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addLayout(header);
    layout->addWidget(splitter, 1);
    layout->addWidget(m_strip);
}

QWidget *frmClientDetails::bind(QWidget *control, const char *arrayName, const QString &field, const QString &caption, bool required,
                                const QString &tip)
{
    const int index = m_nextIndex++;
    control->setObjectName(QString::fromLatin1(arrayName));
    control->setProperty("DataField", field);
    control->setProperty("Tag", required ? QStringLiteral("R") : QString());
    control->setProperty("Index", index);
    control->setToolTip(tip);
    QLabel *label = nullptr;
    if (!caption.isEmpty()) {
        label = new QLabel(caption, control->parentWidget());
        label->setObjectName(QStringLiteral("lblLabels"));
        label->setProperty("Index", index);
        label->setBuddy(control);
        if (required) {
            QFont f = label->font();
            f.setBold(true);
            label->setFont(f);
        }
    }
    m_fields->add(control, label);
    if (auto *combo = qobject_cast<QComboBox *>(control); combo && combo->isEditable())
        connect(combo, &QComboBox::editTextChanged, this, [this, combo] { PopulateCityState(combo); });
    return control;
}

QWidget *frmClientDetails::buildTopPane()
{
    auto *pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("picTop"));
    auto row = [this](QFormLayout *form, QWidget *c) { form->addRow(labelOf(c), c); };
    auto text = [](QWidget *parent, int chars) {
        auto *edit = new QLineEdit(parent);
        if (chars > 0)
            edit->setMaximumWidth(edit->fontMetrics().horizontalAdvance(QLatin1Char('M')) * chars);
        return edit;
    };

    auto *personal = new QGroupBox(tr("Client"), pane);
    auto *pForm = compactForm(personal);
    row(pForm, bind(text(personal, 0), "txtData", QStringLiteral("LastName"), tr("Last Name"), true, tr("Enter the client's last name.")));
    row(pForm,
        bind(text(personal, 0), "txtData", QStringLiteral("FirstName"), tr("First Name"), true, tr("Enter the client's first name.")));
    row(pForm,
        bind(oneLetter(text(personal, 3)), "txtData", QStringLiteral("MiddleInitial"), tr("Middle Initial"), false,
             tr("Enter the client's middle initial.")));
    row(pForm,
        bind(masked(personal, QStringLiteral("999-99-9999")), "mskData", QStringLiteral("SocialSecurityNumber"), tr("Social Security No"),
             true, tr("Enter the client's social security number.")));
    row(pForm,
        bind(text(personal, 0), "txtData", QStringLiteral("DriversLicenseNumber"), tr("Drivers License No"), false,
             tr("Enter the client's drivers license number.")));
    row(pForm,
        bind(masked(personal, QStringLiteral("99/99/9999")), "mskData", QStringLiteral("BirthDate"), tr("Birth Date"), false,
             tr("Enter the client's birthdate (mm/dd/yyyy).")));
    QWidget *gender = bind(dropDown(personal), "cboData", QStringLiteral("Gender"), tr("Gender"), false, tr("Select the client's gender."));
    static_cast<QComboBox *>(gender)->setMinimumContentsLength(3);
    row(pForm, gender);

    auto *address = new QGroupBox(tr("Address and Telephone"), pane);
    auto *aForm = compactForm(address);
    row(aForm,
        bind(shortMemo(address, 2), "txtData", QStringLiteral("Address"), tr("Address"), true,
             tr("Enter the client's address. Multiple lines are allowed.")));
    row(aForm, bind(text(address, 0), "txtData", QStringLiteral("City"), tr("City"), true, tr("Enter the client's city.")));
    auto *stateZip = new QHBoxLayout;
    QWidget *state = bind(dropDown(address), "cboData", QStringLiteral("State"), tr("State"), true, tr("Select the client's state."));
    static_cast<QComboBox *>(state)->setMinimumContentsLength(3);
    QWidget *zip = bind(dropDown(address, true), "cboData", QStringLiteral("ZipCode"), tr("Zip Code"), false,
                        tr("Enter/select the client's zip/postal code."));
    static_cast<QComboBox *>(zip)->setMinimumContentsLength(6);
    stateZip->addWidget(state);
    stateZip->addSpacing(8);
    stateZip->addWidget(labelOf(zip));
    stateZip->addWidget(zip);
    stateZip->addStretch(1);
    aForm->addRow(labelOf(state), stateZip);
    row(aForm,
        bind(masked(address, kPhoneMask), "mskData", QStringLiteral("HomePhone"), tr("Home Phone"), false,
             tr("Enter the client's home telephone number (including area code).")));
    row(aForm,
        bind(masked(address, kPhoneMask), "mskData", QStringLiteral("MobilePhone"), tr("Mobile Phone"), false,
             tr("Enter the client's mobile telephone number (including area code).")));
    row(aForm,
        bind(masked(address, kPhoneMask), "mskData", QStringLiteral("Fax"), tr("Fax"), false,
             tr("Enter the client's fax number (including area code).")));

    auto *background = new QGroupBox(tr("Background"), pane);
    auto *bForm = compactForm(background);
    row(bForm,
        bind(dropDown(background), "cboData", QStringLiteral("EthnicOriginID"), tr("Ethnic Origin"), false,
             tr("Select the client's ethnic origin.")));
    row(bForm,
        bind(dropDown(background), "cboData", QStringLiteral("MaritalStatusID"), tr("Marital Status"), false,
             tr("Select the client's marital status.")));
    row(bForm,
        bind(dropDown(background), "cboData", QStringLiteral("EducationLevelID"), tr("Education Level"), false,
             tr("Select the client's education level.")));
    row(bForm,
        bind(dropDown(background), "cboData", QStringLiteral("HousingID"), tr("Housing"), false,
             tr("Select the type of housing in which the client lives.")));
    row(bForm,
        bind(dropDown(background), "cboData", QStringLiteral("ReligiousPreferenceID"), tr("Religion"), false,
             tr("Select the religious preference of the client.")));
    row(bForm,
        bind(dropDown(background), "cboData", QStringLiteral("OtherAssistanceID"), tr("Other Assistance"), false,
             tr("Select any other assistance that the client may be receiving.")));

    auto *layout = new QHBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(personal, 4);
    layout->addWidget(address, 5);
    layout->addWidget(background, 4);
    return pane;
}

QWidget *frmClientDetails::buildTabs()
{
    tabData = new QTabWidget(this);
    // Nine tabs must fit side by side in the window's first size.
    tabData->setStyleSheet(QStringLiteral("QTabBar::tab { padding: 3px 4px; }"));
    tabData->setIconSize(QSize(8, 8));
    tabData->setObjectName(QStringLiteral("tabData"));
    m_tabCaptions = {tr("Notes"),           tr("Employer"),       tr("Family Members"), tr("Food Service"),  tr("Payment History"),
                     tr("Income/Expenses"), tr("Health/Medical"), tr("FEMA"),           tr("Former Address")};
    auto labelAbove = [this](QVBoxLayout *box, QWidget *c) {
        box->addWidget(labelOf(c));
        box->addWidget(c, 1);
    };
    auto sideBySide = [labelAbove](QHBoxLayout *row, QWidget *c) {
        auto *column = new QVBoxLayout;
        labelAbove(column, c);
        row->addLayout(column, 1);
    };

    auto *notes = new QWidget(tabData);
    auto *notesBox = new QVBoxLayout(notes);
    labelAbove(notesBox,
               bind(memo(notes, 3), "txtData", QStringLiteral("Comments"), tr("Comments:"), false,
                    tr("Enter any additional information here. Multiple lines are allowed.")));
    tabData->addTab(notes, m_tabCaptions.at(NotesTab));

    auto *employer = new QWidget(tabData);
    auto *eGrid = new QGridLayout(employer);
    eGrid->setVerticalSpacing(4);
    auto place = [this, eGrid](QWidget *c, int r, int col, int rowSpan = 1, int colSpan = 1) {
        eGrid->addWidget(labelOf(c), r, col, Qt::AlignLeft | Qt::AlignTop);
        eGrid->addWidget(c, r, col + 1, rowSpan, colSpan);
    };
    auto *employerName = new QLineEdit(employer);
    place(bind(employerName, "txtData", QStringLiteral("EmployerName"), tr("Employer Name"), false,
               tr("Enter the name of the client's employer.")),
          0, 0);
    place(bind(shortMemo(employer, 2), "txtData", QStringLiteral("EmployerAddress"), tr("Address"), false,
               tr("Enter the employer's address. Multiple lines are allowed.")),
          1, 0, 2);
    auto *employerCity = new QLineEdit(employer);
    place(bind(employerCity, "txtData", QStringLiteral("EmployerCity"), tr("City"), false, tr("Enter the employer's city.")), 3, 0);
    QWidget *employerState
        = bind(dropDown(employer), "cboData", QStringLiteral("EmployerState"), tr("State"), false, tr("Select the employer's state."));
    static_cast<QComboBox *>(employerState)->setMinimumContentsLength(3);
    place(employerState, 0, 2);
    QWidget *employerZip = bind(dropDown(employer, true), "cboData", QStringLiteral("EmployerZip"), tr("Zip Code"), false,
                                tr("Enter/select the employer's zip/postal code."));
    static_cast<QComboBox *>(employerZip)->setMinimumContentsLength(8);
    place(employerZip, 1, 2);
    place(bind(masked(employer, kPhoneMask), "mskData", QStringLiteral("WorkPhone"), tr("Work Phone"), false,
               tr("Enter the client's work telephone number (including area code).")),
          2, 2);
    auto *duration = new QHBoxLayout;
    QWidget *years = bind(masked(employer, QStringLiteral("999")), "mskData", QStringLiteral("EmployerDurationYears"), tr("yrs"), false,
                          tr("Enter the number of years with this employer."));
    QWidget *months = bind(masked(employer, QStringLiteral("999")), "mskData", QStringLiteral("EmployerDurationMonths"), tr("months"),
                           false, tr("Enter the number of months with this employer."));
    duration->addWidget(years);
    duration->addWidget(labelOf(years));
    duration->addSpacing(8);
    duration->addWidget(months);
    duration->addWidget(labelOf(months));
    duration->addStretch(1);
    auto *durationLabel = new QLabel(tr("How long with this employer?"), employer);
    eGrid->addWidget(durationLabel, 3, 2);
    eGrid->addLayout(duration, 3, 3);
    eGrid->setColumnStretch(1, 3);
    eGrid->setColumnStretch(3, 2);
    eGrid->setRowStretch(4, 1);
    tabData->addTab(employer, m_tabCaptions.at(EmployerTab));

    tabData->addTab(buildGridPage(FamilyTab, tr("family member")), m_tabCaptions.at(FamilyTab));
    tabData->addTab(buildGridPage(FoodServiceTab, tr("food service entry")), m_tabCaptions.at(FoodServiceTab));
    tabData->addTab(buildGridPage(PaymentTab, tr("payment entry")), m_tabCaptions.at(PaymentTab));
    tabData->addTab(buildGridPage(IncomeExpensesTab, tr("income/expense entry")), m_tabCaptions.at(IncomeExpensesTab));

    auto *health = new QWidget(tabData);
    auto *healthBox = new QHBoxLayout(health);
    sideBySide(healthBox,
               bind(memo(health, 2), "txtData", QStringLiteral("DietaryRequirements"), tr("Special dietary requirements:"), false,
                    tr("Enter any special dietary requirements of the client.")));
    sideBySide(healthBox,
               bind(memo(health, 2), "txtData", QStringLiteral("MedicalProblems"), tr("List any medical problems or current medications:"),
                    false, tr("Enter any medical problems or current medications of the client.")));
    tabData->addTab(health, m_tabCaptions.at(HealthTab));

    auto *fema = new QWidget(tabData);
    auto *femaBox = new QHBoxLayout(fema);
    auto *checks = new QVBoxLayout;
    auto *eligible = new QCheckBox(tr("Check here if client is eligible for FEMA assistance:"), fema);
    eligible->setLayoutDirection(Qt::RightToLeft);
    checks->addWidget(
        bind(eligible, "chkData", QStringLiteral("FEMAEligible"), {}, false, tr("Check if the client is eligible for FEMA assistance.")), 0,
        Qt::AlignLeft);
    auto *contacted = new QCheckBox(tr("Has client contacted FEMA?"), fema);
    contacted->setLayoutDirection(Qt::RightToLeft);
    checks->addWidget(bind(contacted, "chkData", QStringLiteral("FEMAContacted"), {}, false, tr("Check if the client has contacted FEMA.")),
                      0, Qt::AlignLeft);
    checks->addStretch(1);
    femaBox->addLayout(checks);
    femaBox->addSpacing(12);
    sideBySide(femaBox,
               bind(memo(fema, 2), "txtData", QStringLiteral("FEMAComments"), tr("Comments:"), false,
                    tr("Enter any comments about FEMA assistance.")));
    tabData->addTab(fema, m_tabCaptions.at(FEMATab));

    auto *former = new QWidget(tabData);
    auto *formerBox = new QHBoxLayout(former);
    sideBySide(formerBox,
               bind(memo(former, 2), "txtData", QStringLiteral("FormerAddress"), tr("Former Address:"), false,
                    tr("Enter the client's former address.")));
    sideBySide(formerBox,
               bind(memo(former, 2), "txtData", QStringLiteral("RelativesSearchingFor"), tr("Relatives/friends searching for:"), false,
                    tr("Enter any relatives or friends the client is searching for.")));
    tabData->addTab(former, m_tabCaptions.at(FormerAddressTab));
    return tabData;
}

QWidget *frmClientDetails::buildGridPage(Tab tab, const QString &noun)
{
    auto *page = new QWidget(tabData);
    const ClientSubGrid::Look look {QStringLiteral("frmClientDetails"),
                                    ClientRecordQueries::Form::Full,
                                    true,
                                    tr("&Add..."),
                                    tr("&Edit..."),
                                    tr("&Delete"),
                                    noun,
                                    QStringLiteral(" ")};
    auto *rows = new ClientSubGrid(workspace(), look, page);
    auto fit = [](QTableView *grid) {
        basClient::FitColumns(grid);
        grid->horizontalHeader()->setStretchLastSection(true);
    };
    switch (tab) {
    case FamilyTab:
        fit(rows->addGrid(RecordKind::FamilyMember,
                          QCoreApplication::translate("ColumnHeadings", "Relationship,1600|Name,2600|^Age,800|^Gender,800|^SSN,1400")));
        break;
    case FoodServiceTab:
        fit(rows->addGrid(RecordKind::FoodService,
                          QCoreApplication::translate("ColumnHeadings", "Date,1000|Type of Service,2700|^Bags,600|Comments,2850")));
        break;
    case PaymentTab:
        fit(rows->addGrid(
            RecordKind::Payment,
            QCoreApplication::translate("ColumnHeadings", "Date,1000|Type of Payment,2300|^Amt Paid,900|^Amt Req,900|Comments,2100")));
        break;
    default:
        fit(rows->addGrid(RecordKind::Income, QCoreApplication::translate("ColumnHeadings", "<Source,2350|^Amount,900"),
                          tr("Monthly Income:"), tr("income entry"), tr("&Add Income...")));
        fit(rows->addGrid(RecordKind::Expenses, QCoreApplication::translate("ColumnHeadings", "<Category,2350|^Amount,900"),
                          tr("Monthly Expenses:"), tr("expense entry"), tr("&Add Expense...")));
        break;
    }
    connect(rows, &ClientSubGrid::rowDeleted, this, [this] {
        FlagTabs();
        showHousehold();
        announceClientRecordsChanged(m_clientId);
    });
    m_grids.insert(tab, rows);
    auto *layout = new QHBoxLayout(page);
    layout->addWidget(rows);
    return page;
}
