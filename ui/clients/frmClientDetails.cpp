#include "frmClientDetails.h"

#include "DataBinding.h"
#include "GridModel.h"
#include "Prompt.h"
#include "Recordset.h"
#include "SqlText.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basTendmark.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

namespace {

const QString kDefaultSql = QStringLiteral("SELECT * FROM Client ORDER BY LastName");
const QString kCaption = QStringLiteral("Client Details");
const QString kPhoneMask = QStringLiteral("(999) 999-9999");
const QString kDuplicateTail = QStringLiteral(
    " is already on file for another client. Select an entry from the following the list and click 'OK' to go to that client "
    "record. Click 'Cancel' to continue saving the current record.");

QIcon dataIcon()
{
    QPixmap pixmap(12, 12);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x2e, 0x7d, 0x32));
    painter.drawEllipse(2, 2, 8, 8);
    return QIcon(pixmap);
}

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

} // namespace

frmClientDetails::frmClientDetails(Workspace *main, const QString &clientId) : MdiChild(main)
{
    setObjectName(QStringLiteral("frmClientDetails"));
    setWindowTitle(kCaption);
    m_sql = kDefaultSql;
    m_rs = new Recordset(this);
    buildForm();
    m_loading = true;
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.Form_Load"), [&] {
        fillCombos();
        m_rs->open(QStringLiteral("Client"), QStringLiteral("ClientID"), m_sql);
    });
    m_loading = false;
    ShowTabs();
    if (clientId == QLatin1String("ADD") || !m_rs->isOpen()) {
        AddRecord();
        DisplayClient();
    } else if (clientId.isEmpty()) {
        displayCurrent();
    } else {
        goToClient(clientId);
    }
    auto *keys = new NavigationKeys(this, [this](NavigationKeys::Move m) { navigate(m); });
    keys->watchChildren();
}

// ---------------------------------------------------------------- layout

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
    lblHousehold->setToolTip(QStringLiteral("The number of people in the household and the date of the last food service."));
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

    auto nav = [this](const char *name, const QString &caption, const QString &tip) {
        auto *b = new QPushButton(caption, this);
        b->setObjectName(QString::fromLatin1(name));
        b->setToolTip(tip);
        b->setAutoDefault(false);
        b->setFocusPolicy(Qt::TabFocus);
        return b;
    };
    cmdFirst = nav("cmdFirst", QStringLiteral("|<"), QStringLiteral("Go to the first record."));
    cmdPrevious = nav("cmdPrevious", QStringLiteral("<"), QStringLiteral("Go to the previous record."));
    cmdNext = nav("cmdNext", QStringLiteral(">"), QStringLiteral("Go to the next record."));
    cmdLast = nav("cmdLast", QStringLiteral(">|"), QStringLiteral("Go to the last record."));
    cmdAdd = nav("cmdAdd", QStringLiteral("Add"), QStringLiteral("Add a new record."));
    for (QPushButton *b : {cmdFirst, cmdPrevious, cmdNext, cmdLast})
        b->setFixedWidth(b->fontMetrics().horizontalAdvance(QStringLiteral(">|")) + 24);
    lblStatus = new QLabel(this);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->setToolTip(QStringLiteral("Displays the record number, the total number of records, and the current record id."));
    lblStatus->setAlignment(Qt::AlignCenter);
    lblStatus->setFrameShape(QFrame::StyledPanel);
    lblStatus->setMinimumWidth(lblStatus->fontMetrics().horizontalAdvance(QStringLiteral("Record: 100000 of 100000     ID: 100000")) + 16);
    auto *strip = new QHBoxLayout;
    strip->addWidget(cmdFirst);
    strip->addWidget(cmdPrevious);
    strip->addWidget(lblStatus);
    strip->addWidget(cmdNext);
    strip->addWidget(cmdLast);
    strip->addSpacing(12);
    strip->addWidget(cmdAdd);
    strip->addStretch(1);
    connect(cmdFirst, &QPushButton::clicked, this, [this] { navigate(NavigationKeys::Move::First); });
    connect(cmdPrevious, &QPushButton::clicked, this, [this] { navigate(NavigationKeys::Move::Previous); });
    connect(cmdNext, &QPushButton::clicked, this, [this] { navigate(NavigationKeys::Move::Next); });
    connect(cmdLast, &QPushButton::clicked, this, [this] { navigate(NavigationKeys::Move::Last); });
    connect(cmdAdd, &QPushButton::clicked, this, &frmClientDetails::cmdAdd_Click);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addLayout(header);
    layout->addWidget(splitter, 1);
    layout->addLayout(strip);
}

QWidget *frmClientDetails::bind(QWidget *control, const char *arrayName, const QString &field, const QString &caption,
                                bool required, const QString &tip)
{
    const int index = m_nextIndex++;
    control->setObjectName(QString::fromLatin1(arrayName));
    control->setProperty("DataField", field);
    control->setProperty("Tag", required ? QStringLiteral("R") : QString());
    control->setProperty("Index", index);
    control->setToolTip(tip);
    if (!caption.isEmpty()) {
        auto *label = new QLabel(caption, control->parentWidget());
        label->setObjectName(QStringLiteral("lblLabels"));
        label->setProperty("Index", index);
        label->setBuddy(control);
        if (required) {
            QFont f = label->font();
            f.setBold(true);
            label->setFont(f);
        }
        m_labels.insert(control, label);
    }
    m_controls << control;
    control->installEventFilter(this);
    if (auto *edit = qobject_cast<QLineEdit *>(control)) {
        connect(edit, &QLineEdit::textChanged, this, &frmClientDetails::markChanged);
    } else if (auto *plain = qobject_cast<QPlainTextEdit *>(control)) {
        connect(plain, &QPlainTextEdit::textChanged, this, &frmClientDetails::markChanged);
    } else if (auto *check = qobject_cast<QCheckBox *>(control)) {
        connect(check, &QCheckBox::toggled, this, &frmClientDetails::markChanged);
    } else if (auto *combo = qobject_cast<QComboBox *>(control)) {
        connect(combo, &QComboBox::currentIndexChanged, this, &frmClientDetails::markChanged);
        if (combo->isEditable()) {
            combo->lineEdit()->installEventFilter(this);
            connect(combo, &QComboBox::editTextChanged, this, [this, combo] {
                markChanged();
                PopulateCityState(combo);
            });
        }
    }
    return control;
}

QLabel *frmClientDetails::labelOf(QWidget *control) const { return m_labels.value(control); }

QWidget *frmClientDetails::control(const QString &field) const
{
    for (QWidget *c : m_controls)
        if (basTendmark::DataField(c) == field)
            return c;
    return nullptr;
}

QWidget *frmClientDetails::buildTopPane()
{
    auto *pane = new QWidget(this);
    pane->setObjectName(QStringLiteral("picTop"));
    auto row = [this](QFormLayout *form, QWidget *c) { form->addRow(labelOf(c), c); };
    auto text = [](QWidget *parent, int maxLength, int chars) {
        auto *edit = new QLineEdit(parent);
        edit->setMaxLength(maxLength);
        if (chars > 0)
            edit->setMaximumWidth(edit->fontMetrics().horizontalAdvance(QLatin1Char('M')) * chars);
        return edit;
    };

    auto *personal = new QGroupBox(QStringLiteral("Client"), pane);
    auto *pForm = compactForm(personal);
    row(pForm, bind(text(personal, 50, 0), "txtData", QStringLiteral("LastName"), QStringLiteral("Last Name"), true,
                    QStringLiteral("Enter the client's last name.")));
    row(pForm, bind(text(personal, 50, 0), "txtData", QStringLiteral("FirstName"), QStringLiteral("First Name"), true,
                    QStringLiteral("Enter the client's first name.")));
    row(pForm, bind(text(personal, 1, 3), "txtData", QStringLiteral("MiddleInitial"), QStringLiteral("Middle Initial"), false,
                    QStringLiteral("Enter the client's middle initial.")));
    row(pForm, bind(masked(personal, QStringLiteral("999-99-9999")), "mskData", QStringLiteral("SocialSecurityNumber"),
                    QStringLiteral("Social Security No"), true, QStringLiteral("Enter the client's social security number.")));
    row(pForm, bind(text(personal, 20, 0), "txtData", QStringLiteral("DriversLicenseNumber"), QStringLiteral("Drivers License No"),
                    false, QStringLiteral("Enter the client's drivers license number.")));
    row(pForm, bind(masked(personal, QStringLiteral("99/99/9999")), "mskData", QStringLiteral("BirthDate"), QStringLiteral("Birth Date"),
                    false, QStringLiteral("Enter the client's birthdate (mm/dd/yyyy).")));
    QWidget *gender = bind(dropDown(personal), "cboData", QStringLiteral("Gender"), QStringLiteral("Gender"), false,
                           QStringLiteral("Select the client's gender."));
    static_cast<QComboBox *>(gender)->setMinimumContentsLength(3);
    row(pForm, gender);

    auto *address = new QGroupBox(QStringLiteral("Address and Telephone"), pane);
    auto *aForm = compactForm(address);
    row(aForm, bind(shortMemo(address, 2), "txtData", QStringLiteral("Address"), QStringLiteral("Address"), true,
                    QStringLiteral("Enter the client's address. Multiple lines are allowed.")));
    row(aForm, bind(text(address, 50, 0), "txtData", QStringLiteral("City"), QStringLiteral("City"), true,
                    QStringLiteral("Enter the client's city.")));
    auto *stateZip = new QHBoxLayout;
    QWidget *state = bind(dropDown(address), "cboData", QStringLiteral("State"), QStringLiteral("State"), true,
                          QStringLiteral("Select the client's state."));
    static_cast<QComboBox *>(state)->setMinimumContentsLength(3);
    QWidget *zip = bind(dropDown(address, true), "cboData", QStringLiteral("ZipCode"), QStringLiteral("Zip Code"), false,
                        QStringLiteral("Enter/select the client's zip/postal code."));
    static_cast<QComboBox *>(zip)->setMinimumContentsLength(6);
    stateZip->addWidget(state);
    stateZip->addSpacing(8);
    stateZip->addWidget(labelOf(zip));
    stateZip->addWidget(zip);
    stateZip->addStretch(1);
    aForm->addRow(labelOf(state), stateZip);
    row(aForm, bind(masked(address, kPhoneMask), "mskData", QStringLiteral("HomePhone"), QStringLiteral("Home Phone"), false,
                    QStringLiteral("Enter the client's home telephone number (including area code).")));
    row(aForm, bind(masked(address, kPhoneMask), "mskData", QStringLiteral("MobilePhone"), QStringLiteral("Mobile Phone"), false,
                    QStringLiteral("Enter the client's mobile telephone number (including area code).")));
    row(aForm, bind(masked(address, kPhoneMask), "mskData", QStringLiteral("Fax"), QStringLiteral("Fax"), false,
                    QStringLiteral("Enter the client's fax number (including area code).")));

    auto *background = new QGroupBox(QStringLiteral("Background"), pane);
    auto *bForm = compactForm(background);
    row(bForm, bind(dropDown(background), "cboData", QStringLiteral("EthnicOriginID"), QStringLiteral("Ethnic Origin"), false,
                    QStringLiteral("Select the client's ethnic origin.")));
    row(bForm, bind(dropDown(background), "cboData", QStringLiteral("MaritalStatusID"), QStringLiteral("Marital Status"), false,
                    QStringLiteral("Select the client's marital status.")));
    row(bForm, bind(dropDown(background), "cboData", QStringLiteral("EducationLevelID"), QStringLiteral("Education Level"), false,
                    QStringLiteral("Select the client's education level.")));
    row(bForm, bind(dropDown(background), "cboData", QStringLiteral("HousingID"), QStringLiteral("Housing"), false,
                    QStringLiteral("Select the type of housing in which the client lives.")));
    row(bForm, bind(dropDown(background), "cboData", QStringLiteral("ReligiousPreferenceID"), QStringLiteral("Religion"), false,
                    QStringLiteral("Select the religious preference of the client.")));
    row(bForm, bind(dropDown(background), "cboData", QStringLiteral("OtherAssistanceID"), QStringLiteral("Other Assistance"), false,
                    QStringLiteral("Select any other assistance that the client may be receiving.")));

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
    m_tabCaptions = {QStringLiteral("Notes"), QStringLiteral("Employer"), QStringLiteral("Family Members"),
                     QStringLiteral("Food Service"), QStringLiteral("Payment History"), QStringLiteral("Income/Expenses"),
                     QStringLiteral("Health/Medical"), QStringLiteral("FEMA"), QStringLiteral("Former Address")};
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
    labelAbove(notesBox, bind(memo(notes, 3), "txtData", QStringLiteral("Comments"), QStringLiteral("Comments:"), false,
                              QStringLiteral("Enter any additional information here. Multiple lines are allowed.")));
    tabData->addTab(notes, m_tabCaptions.at(NotesTab));

    auto *employer = new QWidget(tabData);
    auto *eGrid = new QGridLayout(employer);
    eGrid->setVerticalSpacing(4);
    auto place = [this, eGrid](QWidget *c, int r, int col, int rowSpan = 1, int colSpan = 1) {
        eGrid->addWidget(labelOf(c), r, col, Qt::AlignLeft | Qt::AlignTop);
        eGrid->addWidget(c, r, col + 1, rowSpan, colSpan);
    };
    auto *employerName = new QLineEdit(employer);
    employerName->setMaxLength(50);
    place(bind(employerName, "txtData", QStringLiteral("EmployerName"), QStringLiteral("Employer Name"), false,
               QStringLiteral("Enter the name of the client's employer.")), 0, 0);
    place(bind(shortMemo(employer, 2), "txtData", QStringLiteral("EmployerAddress"), QStringLiteral("Address"), false,
               QStringLiteral("Enter the employer's address. Multiple lines are allowed.")), 1, 0, 2);
    auto *employerCity = new QLineEdit(employer);
    employerCity->setMaxLength(50);
    place(bind(employerCity, "txtData", QStringLiteral("EmployerCity"), QStringLiteral("City"), false,
               QStringLiteral("Enter the employer's city.")), 3, 0);
    QWidget *employerState = bind(dropDown(employer), "cboData", QStringLiteral("EmployerState"), QStringLiteral("State"), false,
                                  QStringLiteral("Select the employer's state."));
    static_cast<QComboBox *>(employerState)->setMinimumContentsLength(3);
    place(employerState, 0, 2);
    QWidget *employerZip = bind(dropDown(employer, true), "cboData", QStringLiteral("EmployerZip"), QStringLiteral("Zip Code"), false,
                                QStringLiteral("Enter/select the employer's zip/postal code."));
    static_cast<QComboBox *>(employerZip)->setMinimumContentsLength(8);
    place(employerZip, 1, 2);
    place(bind(masked(employer, kPhoneMask), "mskData", QStringLiteral("WorkPhone"), QStringLiteral("Work Phone"), false,
               QStringLiteral("Enter the client's work telephone number (including area code).")), 2, 2);
    auto *duration = new QHBoxLayout;
    QWidget *years = bind(masked(employer, QStringLiteral("999")), "mskData", QStringLiteral("EmployerDurationYears"),
                          QStringLiteral("yrs"), false, QStringLiteral("Enter the number of years with this employer."));
    QWidget *months = bind(masked(employer, QStringLiteral("999")), "mskData", QStringLiteral("EmployerDurationMonths"),
                           QStringLiteral("months"), false, QStringLiteral("Enter the number of months with this employer."));
    duration->addWidget(years);
    duration->addWidget(labelOf(years));
    duration->addSpacing(8);
    duration->addWidget(months);
    duration->addWidget(labelOf(months));
    duration->addStretch(1);
    auto *durationLabel = new QLabel(QStringLiteral("How long with this employer?"), employer);
    eGrid->addWidget(durationLabel, 3, 2);
    eGrid->addLayout(duration, 3, 3);
    eGrid->setColumnStretch(1, 3);
    eGrid->setColumnStretch(3, 2);
    eGrid->setRowStretch(4, 1);
    tabData->addTab(employer, m_tabCaptions.at(EmployerTab));

    tabData->addTab(buildGridPage(FamilyTab, QStringLiteral("family member")), m_tabCaptions.at(FamilyTab));
    tabData->addTab(buildGridPage(FoodServiceTab, QStringLiteral("food service entry")), m_tabCaptions.at(FoodServiceTab));
    tabData->addTab(buildGridPage(PaymentTab, QStringLiteral("payment entry")), m_tabCaptions.at(PaymentTab));
    tabData->addTab(buildGridPage(IncomeExpensesTab, QStringLiteral("income/expense entry")), m_tabCaptions.at(IncomeExpensesTab));

    auto *health = new QWidget(tabData);
    auto *healthBox = new QHBoxLayout(health);
    sideBySide(healthBox, bind(memo(health, 2), "txtData", QStringLiteral("DietaryRequirements"),
                               QStringLiteral("Special dietary requirements:"), false,
                               QStringLiteral("Enter any special dietary requirements of the client.")));
    sideBySide(healthBox, bind(memo(health, 2), "txtData", QStringLiteral("MedicalProblems"),
                               QStringLiteral("List any medical problems or current medications:"), false,
                               QStringLiteral("Enter any medical problems or current medications of the client.")));
    tabData->addTab(health, m_tabCaptions.at(HealthTab));

    auto *fema = new QWidget(tabData);
    auto *femaBox = new QHBoxLayout(fema);
    auto *checks = new QVBoxLayout;
    auto *eligible = new QCheckBox(QStringLiteral("Check here if client is eligible for FEMA assistance:"), fema);
    eligible->setLayoutDirection(Qt::RightToLeft);
    checks->addWidget(bind(eligible, "chkData", QStringLiteral("FEMAEligible"), {}, false,
                           QStringLiteral("Check if the client is eligible for FEMA assistance.")), 0, Qt::AlignLeft);
    auto *contacted = new QCheckBox(QStringLiteral("Has client contacted FEMA?"), fema);
    contacted->setLayoutDirection(Qt::RightToLeft);
    checks->addWidget(bind(contacted, "chkData", QStringLiteral("FEMAContacted"), {}, false,
                           QStringLiteral("Check if the client has contacted FEMA.")), 0, Qt::AlignLeft);
    checks->addStretch(1);
    femaBox->addLayout(checks);
    femaBox->addSpacing(12);
    sideBySide(femaBox, bind(memo(fema, 2), "txtData", QStringLiteral("FEMAComments"), QStringLiteral("Comments:"), false,
                             QStringLiteral("Enter any comments about FEMA assistance.")));
    tabData->addTab(fema, m_tabCaptions.at(FEMATab));

    auto *former = new QWidget(tabData);
    auto *formerBox = new QHBoxLayout(former);
    sideBySide(formerBox, bind(memo(former, 2), "txtData", QStringLiteral("FormerAddress"), QStringLiteral("Former Address:"), false,
                               QStringLiteral("Enter the client's former address.")));
    sideBySide(formerBox, bind(memo(former, 2), "txtData", QStringLiteral("RelativesSearchingFor"),
                               QStringLiteral("Relatives/friends searching for:"), false,
                               QStringLiteral("Enter any relatives or friends the client is searching for.")));
    tabData->addTab(former, m_tabCaptions.at(FormerAddressTab));
    return tabData;
}

QWidget *frmClientDetails::buildGridPage(Tab tab, const QString &noun)
{
    auto *page = new QWidget(tabData);
    auto *layout = new QHBoxLayout(page);
    auto makeGrid = [this, page](Tab t, const QString &spec, const QString &table, const QString &key, RecordKind editor,
                                 const QString &sql) {
        auto *grid = new QTableView(page);
        grid->setObjectName(QStringLiteral("grdData"));
        grid->setProperty("ColumnSpec", spec);
        grid->setProperty("Table", table);
        basTendmark::FormatDataGrid(grid);
        basClient::FitColumns(grid);
        grid->horizontalHeader()->setStretchLastSection(true);
        m_grids << SubGrid{grid, t, table, key, editor, sql};
        connect(grid, &QTableView::pressed, this, [this, t, grid] {
            m_expensesActive = grid->property("Table").toString() == QLatin1String("Expenses");
            updateGridButtons(t);
        });
        if (t == IncomeExpensesTab)
            grid->installEventFilter(this);   // the grid with the focus decides between income and expenses
        connect(grid, &QTableView::doubleClicked, this, [this, t](const QModelIndex &index) {
            if (index.isValid())
                cmdGridDataEdit_Click(t);
        });
        return grid;
    };
    switch (tab) {
    case FamilyTab:
        layout->addWidget(makeGrid(tab, QStringLiteral("Relationship,1600|Name,2600|^Age,800|^Gender,800|^SSN,1400"),
                                   QStringLiteral("Family"), QStringLiteral("FamilyMemberID"), RecordKind::FamilyMember,
                                   QStringLiteral("SELECT Family.FamilyMemberID, Relationships.RelationshipDescription, ")
                                       + SqlText::fullName(QStringLiteral("Family")) + QStringLiteral(" AS FullName, ")
                                       + SqlText::yearsSince(QStringLiteral("Family.BirthDate")) + QStringLiteral(" AS Age, Family.Gender, ")
                                       + SqlText::ssn(QStringLiteral("Family.SocialSecurityNumber"))
                                       + QStringLiteral(" AS SocialSecurityNumber FROM Family LEFT JOIN Relationships ON "
                                                        "Family.RelationshipID=Relationships.RelationshipID WHERE Family.ClientID = ? "
                                                        "ORDER BY Family.FamilyMemberID")));
        break;
    case FoodServiceTab:
        layout->addWidget(makeGrid(tab, QStringLiteral("Date,1000|Type of Service,2700|^Bags,600|Comments,2850"),
                                   QStringLiteral("FoodService"), QStringLiteral("FoodServiceID"), RecordKind::FoodService,
                                   QStringLiteral("SELECT FoodService.FoodServiceID, ") + SqlText::date(QStringLiteral("FoodService.FoodServiceDate"))
                                       + QStringLiteral(" AS FoodServiceDate, FoodServiceTypes.FoodServiceTypeDescription, "
                                                        "FoodService.NumberOfBags, FoodService.Comments FROM FoodService LEFT JOIN "
                                                        "FoodServiceTypes ON FoodService.FoodServiceTypeID=FoodServiceTypes.FoodServiceTypeID "
                                                        "WHERE FoodService.ClientID = ? ORDER BY FoodService.FoodServiceDate, "
                                                        "FoodService.FoodServiceID")));
        break;
    case PaymentTab:
        layout->addWidget(makeGrid(tab, QStringLiteral("Date,1000|Type of Payment,2300|^Amt Paid,900|^Amt Req,900|Comments,2100"),
                                   QStringLiteral("Payments"), QStringLiteral("PaymentID"), RecordKind::Payment,
                                   QStringLiteral("SELECT Payments.PaymentID, ") + SqlText::date(QStringLiteral("Payments.PaymentDate"))
                                       + QStringLiteral(" AS PaymentDate, PaymentTypes.PaymentTypeDescription, ")
                                       + SqlText::currency(QStringLiteral("Payments.AmountPaid")) + QStringLiteral(" AS AmountPaid, ")
                                       + SqlText::currency(QStringLiteral("Payments.AmountRequested"))
                                       + QStringLiteral(" AS AmountRequested, Payments.Comments FROM Payments LEFT JOIN PaymentTypes ON "
                                                        "Payments.PaymentsTypeID=PaymentTypes.PaymentTypeID WHERE Payments.ClientID = ? "
                                                        "ORDER BY Payments.PaymentDate, Payments.PaymentID")));
        break;
    case IncomeExpensesTab: {
        auto column = [page](const QString &caption, QWidget *grid) {
            auto *box = new QVBoxLayout;
            box->addWidget(new QLabel(caption, page));
            box->addWidget(grid, 1);
            return box;
        };
        layout->addLayout(column(QStringLiteral("Monthly Income:"),
                                 makeGrid(tab, QStringLiteral("<Source,2350|^Amount,900"), QStringLiteral("Income"),
                                          QStringLiteral("IncomeItemID"), RecordKind::Income,
                                          QStringLiteral("SELECT Income.IncomeItemID, IncomeSources.IncomeSourceDescription, ")
                                              + SqlText::currency(QStringLiteral("Income.Amount"))
                                              + QStringLiteral(" AS Amount FROM Income LEFT JOIN IncomeSources ON "
                                                               "Income.IncomeSourceID=IncomeSources.IncomeSourceID WHERE Income.ClientID = ? "
                                                               "ORDER BY IncomeSources.IncomeSourceDescription"))),
                          1);
        layout->addLayout(column(QStringLiteral("Monthly Expenses:"),
                                 makeGrid(tab, QStringLiteral("<Category,2350|^Amount,900"), QStringLiteral("Expenses"),
                                          QStringLiteral("ExpenseItemID"), RecordKind::Expenses,
                                          QStringLiteral("SELECT Expenses.ExpenseItemID, ExpenseCategories.ExpenseCategoryDescription, ")
                                              + SqlText::currency(QStringLiteral("Expenses.Amount"))
                                              + QStringLiteral(" AS Amount FROM Expenses LEFT JOIN ExpenseCategories ON "
                                                               "Expenses.ExpenseCategoryID=ExpenseCategories.ExpenseCategoryID WHERE "
                                                               "Expenses.ClientID = ? ORDER BY ExpenseCategories.ExpenseCategoryDescription"))),
                          1);
        break;
    }
    default:
        break;
    }

    GridButtons buttons;
    auto button = [page](const char *name, const QString &caption, const QString &tip) {
        auto *b = new QPushButton(caption, page);
        b->setObjectName(QString::fromLatin1(name));
        b->setToolTip(tip);
        b->setAutoDefault(false);
        return b;
    };
    buttons.add = button("cmdGridDataAdd", QStringLiteral("&Add..."), QStringLiteral("Click to add a new %1.").arg(noun));
    buttons.edit = button("cmdGridDataEdit", QStringLiteral("&Edit..."), QStringLiteral("Click to edit the selected %1's details.").arg(noun));
    buttons.remove = button("cmdGridDataDelete", QStringLiteral("&Delete"), QStringLiteral("Click to delete the selected %1.").arg(noun));
    auto *column = new QVBoxLayout;
    column->addWidget(buttons.add);
    column->addWidget(buttons.edit);
    column->addWidget(buttons.remove);
    column->addStretch(1);
    layout->addLayout(column);
    connect(buttons.add, &QPushButton::clicked, this, [this, tab] { cmdGridDataAdd_Click(tab); });
    connect(buttons.edit, &QPushButton::clicked, this, [this, tab] { cmdGridDataEdit_Click(tab); });
    connect(buttons.remove, &QPushButton::clicked, this, [this, tab] { cmdGridDataDelete_Click(tab); });
    m_gridButtons.insert(tab, buttons);
    return page;
}

void frmClientDetails::fillCombos()
{
    const struct
    {
        const char *field;
        const char *table;
        const char *key;
        const char *display;
    } combos[] = {
        {"State", "States", "StateID", "StateCode"},
        {"ZipCode", "ZipCode", "ZipCodeID", "ZipCode"},
        {"MaritalStatusID", "MaritalStatus", "MaritalStatusID", "MaritalStatusDescription"},
        {"Gender", "Gender", "GenderID", "GenderCode"},
        {"EthnicOriginID", "EthnicOrigin", "EthnicOriginID", "EthnicOriginDescription"},
        {"EducationLevelID", "EducationLevel", "EducationLevelID", "EducationLevelDescription"},
        {"HousingID", "Housing", "HousingID", "HousingDescription"},
        {"ReligiousPreferenceID", "ReligiousPreference", "ReligiousPreferenceID", "ReligiousPreferenceDescription"},
        {"OtherAssistanceID", "OtherAssistance", "OtherAssistanceID", "OtherAssistanceDescription"},
        {"EmployerState", "States", "StateID", "StateCode"},
        {"EmployerZip", "ZipCode", "ZipCodeID", "ZipCode"},
    };
    for (const auto &c : combos)
        if (auto *combo = qobject_cast<QComboBox *>(control(QString::fromLatin1(c.field))))
            basTendmark::PopulateDataCombo(combo, QString::fromLatin1(c.table), QString::fromLatin1(c.key), QString::fromLatin1(c.display));
}

// ---------------------------------------------------------------- display

void frmClientDetails::displayCurrent()
{
    if (!m_rs->onRow() && m_rs->isOpen()) {
        if (m_rs->recordCount() > 0)
            m_rs->moveFirst();
        else
            AddRecord();
    }
    DisplayClient();
}

void frmClientDetails::DisplayClient()
{
    m_loading = true;
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.DisplayClient"), [&] {
        m_clientId = m_rs->editMode() == Recordset::EditMode::Adding ? QString() : m_rs->key().toString();
        basTendmark::PopulateDataControls(m_controls, *m_rs);
        PopulateGrids();
        FlagTabs();
        DisplayRecordPosition();
        showHousehold();
    });
    m_dataChanged = false;
    m_loading = false;
    Q_EMIT commandsChanged();
}

void frmClientDetails::DisplayRecordPosition()
{
    const int count = m_rs->recordCount();
    const int position = m_rs->absolutePosition();
    // A new record keeps the text of the record shown before it.
    if (count == 0) {
        lblStatus->setText(QStringLiteral("Record: 0 of 0"));
    } else if (position > 0) {
        lblStatus->setText(QStringLiteral("Record: %1 of %2     ID: %3").arg(position).arg(count).arg(m_clientId));
    }
    const bool adding = position < 0;   // a new record leaves every way back open
    cmdFirst->setEnabled(count > 0 && (adding || position != 1));
    cmdPrevious->setEnabled(count > 0 && (adding || position != 1));
    cmdNext->setEnabled(count > 0 && (adding || position < count));
    cmdLast->setEnabled(count > 0 && (adding || position != count));
}

void frmClientDetails::showHousehold()
{
    if (m_clientId.isEmpty()) {
        lblClientName->setText(QStringLiteral("New client"));
        lblHousehold->clear();
        return;
    }
    const QString last = m_rs->value(QStringLiteral("LastName")).toString();
    lblClientName->setText(basClient::DeleteName(last, m_rs->value(QStringLiteral("FirstName")).toString(),
                                                 m_rs->value(QStringLiteral("MiddleInitial")).toString(), false).trimmed());
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT (SELECT COUNT(*) FROM Family WHERE ClientID = ?) + 1, "
                                                      "(SELECT MAX(FoodServiceDate) FROM FoodService WHERE ClientID = ?)"),
                                       {m_clientId.toLongLong(), m_clientId.toLongLong()});
    if (!q.next())
        return;
    const QString last_visit = q.isNull(1) ? QStringLiteral("none") : basTendmark::FormatIsoDate(q.value(1).toString());
    lblHousehold->setText(QStringLiteral("Household: %1   Last food service: %2").arg(q.value(0).toInt()).arg(last_visit));
}

void frmClientDetails::PopulateGrids()
{
    for (SubGrid &g : m_grids) {
        if (m_clientId.isEmpty())
            basTendmark::PopulateDataGrid(g.grid, {});
        else
            basTendmark::PopulateDataGrid(g.grid, g.sql, {m_clientId.toLongLong()});
        g.grid->selectionModel()->clear();
    }
    for (auto it = m_gridButtons.constBegin(); it != m_gridButtons.constEnd(); ++it)
        updateGridButtons(Tab(it.key()));
}

void frmClientDetails::FlagTabs()
{
    static const QIcon icon = dataIcon();
    QList<bool> hasData(9, false);
    for (QWidget *c : m_controls) {
        QWidget *page = c;
        while (page && tabData->indexOf(page) < 0)
            page = page->parentWidget();
        if (!page)
            continue;
        const QString value = basTendmark::GetControlValue(c, m_rs->field(basTendmark::DataField(c)));
        if (!value.isEmpty() && value != QLatin1String("False"))
            hasData[tabData->indexOf(page)] = true;
    }
    for (const SubGrid &g : m_grids)
        if (basTendmark::Model(g.grid)->dataRowCount() > 0)
            hasData[g.tab] = true;
    for (int i = 0; i < tabData->count(); ++i) {
        tabData->setTabIcon(i, hasData.at(i) ? icon : QIcon());
        tabData->setTabText(i, hasData.at(i) ? m_tabCaptions.at(i) + QLatin1Char(' ') : m_tabCaptions.at(i));
    }
}

void frmClientDetails::ShowTabs()
{
    const auto &flags = workspace()->optionFlags();
    for (int i = 0; i < tabData->count(); ++i)
        tabData->setTabVisible(i, flags[size_t(i)]);
}

MdiChild::Commands frmClientDetails::commands() const
{
    Commands c;
    c.save = m_dataChanged;
    // A new client is not on file yet: there is nothing to delete.
    c.del = !m_clientId.isEmpty() && m_rs->editMode() != Recordset::EditMode::Adding;
    c.filter = true;
    c.searchBar = true;
    return c;
}

void frmClientDetails::activated() { ShowTabs(); }

void frmClientDetails::refillForClient(const QString &clientId)
{
    if (clientId != m_clientId)
        return;
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.Form_Activate"), [&] {
        PopulateGrids();
        FlagTabs();
        showHousehold();
    });
}

// ---------------------------------------------------------------- editing

void frmClientDetails::markChanged()
{
    if (m_loading)
        return;
    m_dataChanged = true;
    Q_EMIT commandsChanged();
}

void frmClientDetails::PopulateCityState(QWidget *zip)
{
    if (m_loading)
        return;
    const QString code = basTendmark::GetControlValue(zip, {});
    if (code.isEmpty())
        return;
    QString city;
    QString state;
    if (!basDatabase::GetCityStateFromZip(code, city, state) || (city.isEmpty() && state.isEmpty()))
        return;
    const bool employer = basTendmark::DataField(zip) == QLatin1String("EmployerZip");
    QWidget *cityControl = control(employer ? QStringLiteral("EmployerCity") : QStringLiteral("City"));
    QWidget *stateControl = control(employer ? QStringLiteral("EmployerState") : QStringLiteral("State"));
    if (!city.isEmpty())
        basTendmark::SetControlValue(cityControl, m_rs->field(basTendmark::DataField(cityControl)), city);
    if (!state.isEmpty())
        basTendmark::SetControlValue(stateControl, m_rs->field(basTendmark::DataField(stateControl)), state);
}

bool frmClientDetails::checkValue(QWidget *c, const QString &value, QString &message) const
{
    const FieldInfo field = m_rs->field(basTendmark::DataField(c));
    if (!basDatabase::FieldIsValid(field, value, message))
        return false;
    const auto *edit = qobject_cast<const QLineEdit *>(c);
    if (edit && edit->inputMask().startsWith(QLatin1Char('(')) && value.size() != 10) {
        message = QStringLiteral(" must have all ten digits, area code first.");
        return false;
    }
    if (field.type == FieldInfo::Type::Date && basTendmark::ParseDate(value) > QDate::currentDate()) {
        message = QStringLiteral(" cannot be in the future.");
        return false;
    }
    return true;
}

static QString captionOf(const QLabel *label, const QWidget *c)
{
    if (label)
        return label->text().remove(QLatin1Char(':'));
    if (const auto *check = qobject_cast<const QCheckBox *>(c))
        return check->text().remove(QLatin1Char(':'));
    return {};
}

bool frmClientDetails::validateOnLeave(QWidget *c)
{
    if (m_validating || m_loading || qobject_cast<QCheckBox *>(c))
        return true;
    if (auto *combo = qobject_cast<QComboBox *>(c); combo && !combo->isEditable())
        return true;
    const QString column = basTendmark::DataField(c);
    const QString value = basTendmark::GetControlValue(c, m_rs->field(column));
    if (value.isEmpty() || value == basTendmark::GetFieldValue(*m_rs, column))
        return true;
    QString message;
    if (checkValue(c, value, message))
        return true;
    m_validating = true;
    Prompt::message(QStringLiteral("Data Entry Error"), captionOf(labelOf(c), c) + message, Prompt::Icon::Exclamation, Prompt::Ok);
    focusControl(c);
    m_validating = false;
    return false;
}

void frmClientDetails::focusControl(QWidget *c)
{
    for (QWidget *page = c; page; page = page->parentWidget())
        if (int i = tabData->indexOf(page); i >= 0)
            tabData->setCurrentIndex(i);
    c->setFocus(Qt::OtherFocusReason);
    QTimer::singleShot(0, c, [c] { c->setFocus(Qt::OtherFocusReason); });
}

bool frmClientDetails::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason && reason != Qt::MenuBarFocusReason) {
            auto *w = qobject_cast<QWidget *>(watched);
            if (w && !m_controls.contains(w))
                w = w->parentWidget();   // the line edit inside an editable drop-down list
            if (w && m_controls.contains(w))
                validateOnLeave(w);
        }
    } else if (event->type() == QEvent::FocusIn) {
        if (auto *grid = qobject_cast<QTableView *>(watched)) {
            m_expensesActive = grid->property("Table").toString() == QLatin1String("Expenses");
            updateGridButtons(IncomeExpensesTab);
        }
        if (auto *edit = qobject_cast<QLineEdit *>(watched); edit && !edit->inputMask().isEmpty())
            QTimer::singleShot(0, edit, [edit] { edit->selectAll(); });
    }
    return MdiChild::eventFilter(watched, event);
}

bool frmClientDetails::UpdateFields()
{
    for (QWidget *c : m_controls) {
        const QString column = basTendmark::DataField(c);
        const QString value = basTendmark::GetControlValue(c, m_rs->field(column));
        const QString caption = captionOf(labelOf(c), c);
        if (basTendmark::IsRequired(c) && value.trimmed().isEmpty()) {
            Prompt::message(QStringLiteral("Required Field Empty"), caption + QStringLiteral(" is required."),
                            Prompt::Icon::Exclamation, Prompt::Ok);
            focusControl(c);
            return false;
        }
        if (value == basTendmark::GetFieldValue(*m_rs, column))
            continue;
        auto *combo = qobject_cast<QComboBox *>(c);
        QString message;
        if (!value.isEmpty() && !(combo && !combo->isEditable()) && !checkValue(c, value, message)) {
            Prompt::message(QStringLiteral("Data Entry Error"), caption + message, Prompt::Icon::Exclamation, Prompt::Ok);
            focusControl(c);
            return false;
        }
        if (!basDatabase::UpdateDataField(*m_rs, column, value))
            return false;
    }
    return true;
}

bool frmClientDetails::offerDuplicates(bool found, const Prompt::PickRequest &request)
{
    if (!found)
        return false;
    const std::optional<QString> chosen = Prompt::pick(request);
    if (!chosen)
        return false;
    discardPendingValues();
    if (m_rs->editMode() == Recordset::EditMode::Adding)
        m_rs->cancelUpdate();
    m_dataChanged = false;
    goToClient(*chosen);
    return true;
}

bool frmClientDetails::AddressIsOnFile()
{
    auto value = [this](const char *field) {
        QWidget *c = control(QString::fromLatin1(field));
        return basTendmark::GetControlValue(c, m_rs->field(QString::fromLatin1(field)));
    };
    Prompt::PickRequest request;
    request.caption = QStringLiteral("Client Already On File?");
    request.label = QStringLiteral("The entered address") + kDuplicateTail;
    const bool found = basDatabase::MatchAddress(m_clientId, value("Address"), value("City"), value("State"), request);
    return offerDuplicates(found, request);
}

bool frmClientDetails::SSNIsOnFile()
{
    const QString ssn = basTendmark::GetControlValue(control(QStringLiteral("SocialSecurityNumber")), {});
    if (ssn.isEmpty())
        return false;
    Prompt::PickRequest request;
    request.caption = QStringLiteral("Client Already On File?");
    request.label = QStringLiteral("The entered Social Security Number") + kDuplicateTail;
    return offerDuplicates(basDatabase::MatchSSN(m_clientId, ssn, request), request);
}

void frmClientDetails::discardPendingValues()
{
    if (m_rs->editMode() == Recordset::EditMode::Editing)
        m_rs->cancelUpdate();
    else if (m_rs->editMode() == Recordset::EditMode::Adding)
        m_rs->addNew();   // stays on the new row, without the values taken so far
}

bool frmClientDetails::saveBody()
{
    if (!m_dataChanged) {
        if (m_rs->editMode() == Recordset::EditMode::Adding && m_rs->recordCount() > 0) {
            m_rs->cancelUpdate();
            DisplayClient();
        }
        return true;
    }
    if (AddressIsOnFile() || SSNIsOnFile())
        return false;
    if (!UpdateFields()) {
        discardPendingValues();
        return false;
    }
    m_rs->update();
    m_clientId = m_rs->key().toString();
    m_dataChanged = false;
    announceClientRecordsChanged(m_clientId);
    DisplayClient();
    return true;
}

bool frmClientDetails::UpdateRecord()
{
    bool saved = false;
    if (!basErrorHandler::Guard(QStringLiteral("frmClientDetails.UpdateRecord"), [&] { saved = saveBody(); }))
        discardPendingValues();
    return saved;
}

bool frmClientDetails::SaveCurrentRecord() { return UpdateRecord(); }

void frmClientDetails::AddRecord()
{
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.AddRecord"), [&] {
        if (m_rs->isOpen())
            m_rs->addNew();
        m_clientId.clear();
        Q_EMIT commandsChanged();
    });
}

void frmClientDetails::cmdAdd_Click()
{
    if (!m_dataChanged && m_rs->editMode() == Recordset::EditMode::Adding)
        return;
    if (!UpdateRecord())
        return;
    AddRecord();
    DisplayClient();
    focusControl(m_controls.first());
}

void frmClientDetails::navigate(NavigationKeys::Move move)
{
    static const char *const names[] = {"cmdFirst_Click", "cmdPrevious_Click", "cmdNext_Click", "cmdLast_Click"};
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.") + QLatin1String(names[int(move)]), [&] {
        if (!UpdateRecord())
            return;
        if (m_rs->recordCount() == 0)
            return;
        basClient::MoveRecordset(*m_rs, move);
        DisplayClient();
    });
}

void frmClientDetails::goToClient(const QString &id)
{
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.ClientID"), [&] {
        if (id == QLatin1String("ADD")) {
            AddRecord();
            DisplayClient();
            focusControl(m_controls.first());
            return;
        }
        if (!m_rs->find(id)) {
            Prompt::message(QStringLiteral("Application Error"), QStringLiteral("Error retrieving record."),
                            Prompt::Icon::Exclamation, Prompt::Ok);
            displayCurrent();
            return;
        }
        DisplayClient();
    });
}

bool frmClientDetails::askToSave()
{
    if (!m_dataChanged)
        return true;
    const int answer = Prompt::message(QStringLiteral("Save Record?"), QStringLiteral("Current record has changed. Do you want to save it?"),
                                       Prompt::Icon::Question, Prompt::Yes | Prompt::No | Prompt::Cancel);
    if (answer == Prompt::Yes)
        return UpdateRecord();
    if (answer == Prompt::No) {
        discardPendingValues();
        m_dataChanged = false;
        return true;
    }
    return false;
}

void frmClientDetails::setClientID(const QString &id)
{
    if (!askToSave())
        return;
    goToClient(id);
}

void frmClientDetails::showRecord(const QString &id) { setClientID(id); }

bool frmClientDetails::queryUnload() { return askToSave(); }

void frmClientDetails::setSQL(const QString &sql)
{
    m_sql = sql.isEmpty() ? kDefaultSql : sql;
    setWindowTitle(sql.isEmpty() ? kCaption : kCaption + QStringLiteral(" (Filter Applied)"));
}

void frmClientDetails::ExecuteSQL()
{
    if (!askToSave())
        return;
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.ExecuteSQL"), [&] {
        m_rs->open(QStringLiteral("Client"), QStringLiteral("ClientID"), m_sql);
        if (m_rs->recordCount() > 0) {
            m_rs->moveFirst();
            DisplayClient();
            return;
        }
        AddRecord();
        DisplayClient();
        basClient::TellNoClientRecordsFound();
    });
}

void frmClientDetails::DeleteCurrentRecord()
{
    if (m_clientId.isEmpty())
        return;
    const QString deleted = m_clientId;
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.DeleteCurrentRecord"), [&] {
        auto shown = [this](const char *field) {
            return basTendmark::GetControlValue(control(QString::fromLatin1(field)), {});
        };
        const QString name = basClient::DeleteName(shown("LastName"), shown("FirstName"), shown("MiddleInitial"), false);
        if (!basClient::DeleteClient(*m_rs, m_clientId, name))
            return;
        if (m_rs->recordCount() == 0)
            AddRecord();
        DisplayClient();
        announceClientRecordsChanged(deleted);
    });
}

// ---------------------------------------------------------------- sub-grids

frmClientDetails::SubGrid *frmClientDetails::gridOfTab(Tab tab)
{
    for (SubGrid &g : m_grids)
        if (g.tab == tab && (tab != IncomeExpensesTab || (g.table == QLatin1String("Expenses")) == m_expensesActive))
            return &g;
    return nullptr;
}

void frmClientDetails::updateGridButtons(Tab tab)
{
    const GridButtons buttons = m_gridButtons.value(tab);
    SubGrid *g = gridOfTab(tab);
    const bool onRow = g && g->grid->selectionModel()->hasSelection()
                       && basTendmark::GridRowKey(g->grid, g->grid->currentIndex().row()) > 0;
    buttons.edit->setEnabled(onRow);
    buttons.remove->setEnabled(onRow);
}

void frmClientDetails::cmdGridDataAdd_Click(Tab tab)
{
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.cmdGridDataAdd_Click"), [&] {
        if (m_clientId.isEmpty()) {
            Prompt::message(QStringLiteral("Required Client Data Not Entered"),
                            QStringLiteral("Please enter the required client information before entering any supporting details."),
                            Prompt::Icon::Exclamation, Prompt::Ok);
            return;
        }
        if (SubGrid *g = gridOfTab(tab))
            workspace()->openRecordEditor(g->editor, m_clientId, {});
    });
}

void frmClientDetails::cmdGridDataEdit_Click(Tab tab)
{
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.cmdGridDataEdit_Click"), [&] {
        SubGrid *g = gridOfTab(tab);
        if (!g || m_clientId.isEmpty())
            return;
        const qint64 key = basTendmark::GridRowKey(g->grid, g->grid->currentIndex().row());
        if (key > 0)
            workspace()->openRecordEditor(g->editor, m_clientId, QString::number(key));
    });
}

void frmClientDetails::cmdGridDataDelete_Click(Tab tab)
{
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.cmdGridDataDelete_Click"), [&] {
        SubGrid *g = gridOfTab(tab);
        if (!g)
            return;
        const int row = g->grid->currentIndex().row();
        const qint64 key = basTendmark::GridRowKey(g->grid, row);
        if (key <= 0)
            return;
        const QString what = basTendmark::GridText(g->grid, row, 1) + QLatin1Char(' ') + basTendmark::GridText(g->grid, row, 2);
        if (Prompt::message(QStringLiteral("Delete Record?"), QStringLiteral("Are you sure you want to delete '") + what + QStringLiteral("'?"),
                            Prompt::Icon::Question, Prompt::Yes | Prompt::No)
            != Prompt::Yes)
            return;
        if (!basDatabase::DeleteItemFromTable(g->table, g->keyColumn, QString::number(key)))
            return;
        basTendmark::RemoveGridRow(g->grid, row);
        g->grid->selectionModel()->clear();
        updateGridButtons(tab);
        FlagTabs();
        showHousehold();
        announceClientRecordsChanged(m_clientId);
    });
}
