#include "frmOptions.h"

#include "AgeBrackets.h"
#include "Backups.h"
#include "DataBinding.h"
#include "OptionsStore.h"
#include "PasteGuard.h"
#include "PhoneBox.h"
#include "Prompt.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basRegistry.h"
#include "basTendmark.h"
#include "frmMain.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImage>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

const QString kOrganization = QStringLiteral("Organization");

QString tabCaption(bool OptionFlags::*member)
{
    const std::pair<bool OptionFlags::*, const char *> captions[] = {
        {&OptionFlags::showNotesTab, QT_TRANSLATE_NOOP("frmOptions", "Notes")},
        {&OptionFlags::showEmployerTab, QT_TRANSLATE_NOOP("frmOptions", "Employer")},
        {&OptionFlags::showFamilyMembersTab, QT_TRANSLATE_NOOP("frmOptions", "Family Members")},
        {&OptionFlags::showFoodServiceTab, QT_TRANSLATE_NOOP("frmOptions", "Food Service")},
        {&OptionFlags::showPaymentHistoryTab, QT_TRANSLATE_NOOP("frmOptions", "Payment History")},
        {&OptionFlags::showIncomeExpensesTab, QT_TRANSLATE_NOOP("frmOptions", "Income/Expenses")},
        {&OptionFlags::showHealthMedicalTab, QT_TRANSLATE_NOOP("frmOptions", "Health/Medical")},
        {&OptionFlags::showFEMATab, QT_TRANSLATE_NOOP("frmOptions", "FEMA")},
        {&OptionFlags::showFormerAddressTab, QT_TRANSLATE_NOOP("frmOptions", "Former Address")},
    };
    for (const auto &[m, caption] : captions)
        if (m == member)
            return frmOptions::tr(caption);
    return {};
}

QString pictureFilter()
{
    QStringList patterns;
    for (const QByteArray &format : QImageReader::supportedImageFormats())
        patterns << QStringLiteral("*.") + QString::fromLatin1(format).toLower();
    patterns.removeDuplicates();
    return frmOptions::tr("Pictures (%1);;All Files (*)").arg(patterns.join(QLatin1Char(' ')));
}

QString caption(const QLineEdit *box)
{
    return box->property("Caption").toString();
}

}   // namespace

frmOptions::frmOptions(frmMain *main) : QDialog(main), m_main(main)
{
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(tr("Options"));
    setAttribute(Qt::WA_DeleteOnClose);
    buildControls();
    m_loading = true;
    basErrorHandler::Guard(QStringLiteral("frmOptions.Form_Load"), [&] {
        basTendmark::PopulateDataCombo(m_cboState, QStringLiteral("States"), QStringLiteral("StateID"), QStringLiteral("StateCode"));
        PopulateOrganizationControls();
        PopulateOptionsControls();
    });
    m_loading = false;
    setDataChanged(false);
    connect(qApp, &QApplication::focusChanged, this, &frmOptions::focusChanged);
}

// The focus watch ends before the dialog part goes, which still moves the focus.
frmOptions::~frmOptions()
{
    disconnect(qApp, nullptr, this, nullptr);
}

void frmOptions::buildControls()
{
    auto *layout = new QVBoxLayout(this);

    auto *org = new QGroupBox(tr("Organization"), this);
    auto *grid = new QGridLayout(org);
    int index = 0;
    auto *paste = new PasteGuard(
        this, [](const QWidget *c) { return basDatabase::Field(kOrganization, basTendmark::DataField(c)); },
        [](const QWidget *c) { return caption(static_cast<const QLineEdit *>(c)); });
    auto addLabel = [&](const QString &text, QWidget *buddy, int row, int column) {
        auto *label = new QLabel(text, org);
        label->setObjectName(QStringLiteral("lblLabels"));
        label->setProperty("Index", index);
        label->setBuddy(buddy);
        buddy->setProperty("Index", index++);
        grid->addWidget(label, row, column);
    };
    // Every organisation text box is a "txtData"; the phone brings its own kind of box.
    auto addText = [&](const QString &column, const QString &text, int row, int col, int span, QLineEdit *box = nullptr) {
        if (!box)
            box = new QLineEdit(org);
        box->setObjectName(QStringLiteral("txtData"));
        box->setProperty("DataField", column);
        box->setProperty("Tag", QString());
        box->setProperty("Caption", QString(text).remove(QLatin1Char('&')));
        addLabel(text, box, row, col);
        grid->addWidget(box, row, col + 1, 1, span);
        m_textBoxes << box;
        paste->watch(box);
        connect(box, &QLineEdit::textEdited, this, [this] { setDataChanged(true); });
        return box;
    };
    addText(QStringLiteral("OrganizationName"), tr("Organization &Name"), 0, 0, 5);
    addText(QStringLiteral("OrganizationAddress"), tr("&Address"), 1, 0, 5);
    addText(QStringLiteral("OrganizationCity"), tr("&City"), 2, 0, 1);

    m_cboState = new QComboBox(org);
    m_cboState->setObjectName(QStringLiteral("cboData"));
    m_cboState->setProperty("DataField", QStringLiteral("OrganizationState"));
    m_cboState->setProperty("Tag", QString());
    m_cboState->setMinimumContentsLength(3);
    addLabel(tr("&State"), m_cboState, 2, 2);
    grid->addWidget(m_cboState, 2, 3);
    connect(m_cboState, &QComboBox::currentIndexChanged, this, [this] { setDataChanged(true); });

    QLineEdit *zip = addText(QStringLiteral("OrganizationZip"), tr("&Zip Code"), 2, 4, 1);
    zip->setMaximumWidth(fontMetrics().horizontalAdvance(QLatin1Char('0')) * 12);
    addText(QStringLiteral("OrganizationPhone"), tr("&Phone"), 3, 0, 1, new PhoneBox(org));
    grid->setColumnStretch(1, 1);
    layout->addWidget(org);

    auto *logo = new QGroupBox(tr("Logo printed on reports"), this);
    auto *logoLayout = new QHBoxLayout(logo);
    m_picLogo = new QLabel(logo);
    m_picLogo->setObjectName(QStringLiteral("picLogo"));
    m_picLogo->setFixedSize(160, 90);
    m_picLogo->setAlignment(Qt::AlignCenter);
    m_picLogo->setFrameShape(QFrame::StyledPanel);
    logoLayout->addWidget(m_picLogo);
    auto *logoRight = new QVBoxLayout;
    m_txtLogo = new QLineEdit(logo);
    m_txtLogo->setObjectName(QStringLiteral("txtLogo"));
    m_txtLogo->setProperty("DataField", QStringLiteral("OrganizationLogo"));
    m_txtLogo->setProperty("Tag", QString());
    m_txtLogo->setReadOnly(true);
    m_txtLogo->setPlaceholderText(tr("No logo"));
    logoRight->addWidget(m_txtLogo);
    auto *logoButtons = new QHBoxLayout;
    auto *browse = new QPushButton(tr("&Browse..."), logo);
    browse->setObjectName(QStringLiteral("cmdBrowse"));
    auto *remove = new QPushButton(tr("&Remove"), logo);
    remove->setObjectName(QStringLiteral("cmdRemoveLogo"));
    logoButtons->addWidget(browse);
    logoButtons->addWidget(remove);
    logoButtons->addStretch();
    logoRight->addLayout(logoButtons);
    logoRight->addStretch();
    logoLayout->addLayout(logoRight, 1);
    layout->addWidget(logo);
    connect(browse, &QPushButton::clicked, this, &frmOptions::cmdBrowse_Click);
    connect(remove, &QPushButton::clicked, this, [this] {
        showLogo({});
        setDataChanged(true);
    });

    auto *tabs = new QGroupBox(tr("Tabs shown on the client details window"), this);
    auto *tabGrid = new QGridLayout(tabs);
    int i = 0;
    for (const OptionsStore::FlagColumn &flag : OptionsStore::flagColumns()) {
        auto *check = new QCheckBox(tabCaption(flag.member), tabs);
        check->setObjectName(QStringLiteral("chkData"));
        check->setProperty("DataField", QString::fromLatin1(flag.column));
        check->setProperty("Tag", QString());
        tabGrid->addWidget(check, i / 3, i % 3);
        m_tabChecks.append({check, flag.member});
        connect(check, &QCheckBox::toggled, this, [this] { setDataChanged(true); });
        ++i;
    }
    layout->addWidget(tabs);

    auto *food = new QGroupBox(tr("Food service"), this);
    auto *foodLayout = new QGridLayout(food);
    m_spnInterval = new QSpinBox(food);
    m_spnInterval->setObjectName(QStringLiteral("spnData"));
    m_spnInterval->setProperty("DataField", QStringLiteral("FoodVisitIntervalDays"));
    m_spnInterval->setProperty("Tag", QString());
    m_spnInterval->setRange(0, 365);
    m_spnInterval->setSpecialValueText(tr("0 (no warning)"));
    auto *intervalLabel = new QLabel(tr("Food &visit interval (days)"), food);
    intervalLabel->setBuddy(m_spnInterval);
    auto *hint = new QLabel(tr("Warn when a client comes back for food sooner than this. 0 = no warning."), food);
    hint->setWordWrap(true);
    hint->setEnabled(false);
    foodLayout->addWidget(intervalLabel, 0, 0);
    foodLayout->addWidget(m_spnInterval, 0, 1);
    foodLayout->setColumnStretch(2, 1);
    foodLayout->addWidget(hint, 1, 0, 1, 3);
    layout->addWidget(food);
    connect(m_spnInterval, &QSpinBox::valueChanged, this, [this] { setDataChanged(true); });

    // The agency report's age brackets: a preset, or brackets of the organisation's own.
    auto *agency = new QGroupBox(tr("Agency report"), this);
    auto *agencyLayout = new QGridLayout(agency);
    m_cboAgeBrackets = new QComboBox(agency);
    m_cboAgeBrackets->setObjectName(QStringLiteral("cboAgeBrackets"));
    m_cboAgeBrackets->setEditable(true);
    m_cboAgeBrackets->setInsertPolicy(QComboBox::NoInsert);
    m_cboAgeBrackets->addItems(AgeBrackets::presets());
    m_cboAgeBrackets->setMinimumContentsLength(28);
    // The dialog is as tall as a small screen: the rule is a tip, and a refusal says what is wrong.
    m_cboAgeBrackets->setToolTip(tr("From 0 to 120 without gaps or overlaps, the last one open, as in 0-17,18-59,60+."));
    auto *bracketsLabel = new QLabel(tr("A&ge brackets"), agency);
    bracketsLabel->setBuddy(m_cboAgeBrackets);
    agencyLayout->addWidget(bracketsLabel, 0, 0);
    agencyLayout->addWidget(m_cboAgeBrackets, 0, 1);
    agencyLayout->setColumnStretch(2, 1);
    layout->addWidget(agency);
    connect(m_cboAgeBrackets, &QComboBox::currentTextChanged, this, [this] { setDataChanged(true); });

    // Where this computer keeps its automatic backups, and how many recent ones.
    auto *backups = new QGroupBox(tr("Backups on this computer"), this);
    auto *backupLayout = new QGridLayout(backups);
    m_txtBackupFolder = new QLineEdit(backups);
    m_txtBackupFolder->setObjectName(QStringLiteral("txtBackupFolder"));
    m_txtBackupFolder->setPlaceholderText(tr("A \"backups\" folder beside the database"));
    auto *folderLabel = new QLabel(tr("Backup &folder"), backups);
    folderLabel->setBuddy(m_txtBackupFolder);
    auto *cmdBackupFolder = new QPushButton(tr("B&rowse..."), backups);
    cmdBackupFolder->setObjectName(QStringLiteral("cmdBackupFolder"));
    m_spnBackupsToKeep = new QSpinBox(backups);
    m_spnBackupsToKeep->setObjectName(QStringLiteral("spnBackupsToKeep"));
    m_spnBackupsToKeep->setRange(1, 100);
    auto *keepLabel = new QLabel(tr("Recent backups &kept"), backups);
    keepLabel->setBuddy(m_spnBackupsToKeep);
    auto *keepHint = new QLabel(tr("Besides these, one a day is kept for 30 days and one a month for a year."), backups);
    keepHint->setWordWrap(true);
    keepHint->setEnabled(false);
    backupLayout->addWidget(folderLabel, 0, 0);
    backupLayout->addWidget(m_txtBackupFolder, 0, 1);
    backupLayout->addWidget(cmdBackupFolder, 0, 2);
    backupLayout->addWidget(keepLabel, 1, 0);
    backupLayout->addWidget(m_spnBackupsToKeep, 1, 1, Qt::AlignLeft);
    backupLayout->addWidget(keepHint, 2, 0, 1, 3);
    layout->addWidget(backups);
    connect(m_txtBackupFolder, &QLineEdit::textEdited, this, [this] { setDataChanged(true); });
    connect(m_spnBackupsToKeep, &QSpinBox::valueChanged, this, [this] { setDataChanged(true); });
    connect(cmdBackupFolder, &QPushButton::clicked, this, &frmOptions::cmdBackupFolder_Click);

    layout->addStretch();
    auto *buttons = new QDialogButtonBox(this);
    auto *ok = buttons->addButton(tr("OK"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmdOk"));
    ok->setDefault(true);
    m_cmdCancel = buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    m_cmdApply = buttons->addButton(tr("&Apply"), QDialogButtonBox::ApplyRole);
    m_cmdApply->setObjectName(QStringLiteral("cmdApply"));
    // Clicking a button does not move the focus, so a refused entry is reported once, by the save.
    for (QPushButton *b : {ok, m_cmdCancel, m_cmdApply})
        b->setFocusPolicy(Qt::TabFocus);
    layout->addWidget(buttons);
    connect(ok, &QPushButton::clicked, this, &frmOptions::cmdOk_Click);
    connect(m_cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_cmdApply, &QPushButton::clicked, this, &frmOptions::cmdApply_Click);
}

QWidget *frmOptions::organizationControl(const QString &column) const
{
    for (QLineEdit *box : m_textBoxes)
        if (basTendmark::DataField(box) == column)
            return box;
    return column == QLatin1String("OrganizationState") ? static_cast<QWidget *>(m_cboState) : m_txtLogo;
}

void frmOptions::PopulateOrganizationControls()
{
    Organization organization;
    if (!basErrorHandler::Guard(QStringLiteral("frmOptions.OpenOrganizationTable"),
                                [&] { organization = OptionsStore::readOrganization(); }))
        return;
    basErrorHandler::Guard(QStringLiteral("frmOptions.PopulateOrganizationControls"), [&] {
        for (const OptionsStore::OrganizationColumn &c : OptionsStore::organizationColumns()) {
            const QString column = QString::fromLatin1(c.column);
            const QString &text = organization.*c.member;
            QWidget *control = organizationControl(column);
            if (control == m_txtLogo)
                showLogo(text);
            else if (control == m_cboState)
                m_cboState->setCurrentIndex(basTendmark::GetComboItemIndex(m_cboState, basDatabase::Field(kOrganization, column), text));
            else if (auto *phone = qobject_cast<PhoneBox *>(control))
                phone->setDigits(text);
            else if (auto *box = qobject_cast<QLineEdit *>(control))
                box->setText(text);
        }
    });
}

void frmOptions::PopulateOptionsControls()
{
    DatabaseOptions options;
    if (!basErrorHandler::Guard(QStringLiteral("frmOptions.OpenOptionsTable"), [&] { options = OptionsStore::readOptions(); }))
        return;
    for (const auto &[check, member] : m_tabChecks)
        check->setChecked(options.flags.*member);
    m_spnInterval->setValue(options.foodVisitIntervalDays);
    m_cboAgeBrackets->setCurrentText(options.ageBrackets.isEmpty() ? AgeBrackets::presets().constFirst() : options.ageBrackets);
    const QString key = basRegistry::SettingsKey();
    m_txtBackupFolder->setText(basRegistry::GetString(key, QStringLiteral("BackupFolder")));
    m_spnBackupsToKeep->setValue(Backups::KeepLast());
}

void frmOptions::showLogo(const QString &path)
{
    m_txtLogo->setText(path);
    m_txtLogo->setToolTip(QDir::toNativeSeparators(path));
    m_picLogo->clear();
    if (path.isEmpty()) {
        m_picLogo->setText(tr("No logo"));
        return;
    }
    const QImage image(path);
    if (image.isNull()) {
        m_picLogo->setText(QFileInfo::exists(path) ? tr("Cannot show\nthis picture") : tr("Picture\nnot found"));
        return;
    }
    m_picLogo->setPixmap(QPixmap::fromImage(image.scaled(m_picLogo->size() - QSize(4, 4), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void frmOptions::setDataChanged(bool changed)
{
    if (m_loading)
        return;
    m_dataChanged = changed;
    m_cmdApply->setEnabled(changed);
}

bool frmOptions::txtData_Validate(QLineEdit *box)
{
    bool valid = true;
    basErrorHandler::Guard(QStringLiteral("frmOptions.txtData_Validate"), [&] {
        const QString column = basTendmark::DataField(box);
        const FieldInfo field = basDatabase::Field(kOrganization, column);
        const QString value = basTendmark::GetControlValue(box, field);
        QString message;
        valid = basDatabase::FieldIsValid(field, value, message);
        if (!valid)
            Prompt::message(tr("Data Entry Error"), caption(box) + message, Prompt::Icon::Exclamation, Prompt::Ok);
    });
    return valid;
}

void frmOptions::focusChanged(QWidget *old, QWidget *now)
{
    auto *box = qobject_cast<QLineEdit *>(old);
    if (m_validating || !box || !m_textBoxes.contains(box) || !now || now == m_cmdCancel || !isAncestorOf(now))
        return;
    m_validating = true;
    if (!txtData_Validate(box))
        box->setFocus();
    m_validating = false;
}

bool frmOptions::Update()
{
    m_validating = true;
    for (QLineEdit *box : m_textBoxes) {
        if (!txtData_Validate(box)) {
            box->setFocus();
            m_validating = false;
            return false;
        }
    }
    m_validating = false;
    if (m_txtLogo->text().size() > basDatabase::Field(kOrganization, QStringLiteral("OrganizationLogo")).size) {
        Prompt::message(tr("Data Entry Error"), tr("The logo's file path is too long. Move the picture to a shorter path."),
                        Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    }

    QList<AgeBrackets::Bracket> brackets;
    QString bracketsError;
    if (!AgeBrackets::parse(m_cboAgeBrackets->currentText(), &brackets, &bracketsError)) {
        Prompt::message(tr("Data Entry Error"), bracketsError, Prompt::Icon::Exclamation, Prompt::Ok);
        m_cboAgeBrackets->setFocus();
        return false;
    }

    Organization organization;
    DatabaseOptions options;
    const bool saved = basErrorHandler::Guard(QStringLiteral("frmOptions.Update"), [&] {
        for (const OptionsStore::OrganizationColumn &c : OptionsStore::organizationColumns()) {
            const QString column = QString::fromLatin1(c.column);
            QWidget *control = organizationControl(column);
            organization.*c.member = control == m_txtLogo
                ? m_txtLogo->text()
                : basTendmark::GetControlValue(control, basDatabase::Field(kOrganization, column));
        }
        for (const auto &[check, member] : m_tabChecks)
            options.flags.*member = check->isChecked();
        options.foodVisitIntervalDays = m_spnInterval->value();
        options.ageBrackets = AgeBrackets::text(brackets);
        OptionsStore::save(organization, options);
    });
    if (!saved)
        return false;
    const QString key = basRegistry::SettingsKey();
    basRegistry::SetString(key, QStringLiteral("BackupFolder"), m_txtBackupFolder->text().trimmed());
    basRegistry::SetString(key, QStringLiteral("BackupsToKeep"), QString::number(m_spnBackupsToKeep->value()));
    m_cboAgeBrackets->setCurrentText(options.ageBrackets);   // as stored: " 0 - 17, ..." reads back "0-17,..."
    setDataChanged(false);
    m_main->DisplayOrganizationName();
    m_main->refreshOptionFlags();
    return true;
}

void frmOptions::cmdOk_Click()
{
    bool saved = true;
    basErrorHandler::Guard(QStringLiteral("frmOptions.cmdOk_Click"), [&] { saved = !m_dataChanged || Update(); });
    if (saved)
        accept();
}

void frmOptions::cmdApply_Click()
{
    basErrorHandler::Guard(QStringLiteral("frmOptions.cmdApply_Click"), [&] { Update(); });
}

void frmOptions::cmdBackupFolder_Click()
{
    const QString folder = Prompt::folderName(tr("Select Backup Folder"), m_txtBackupFolder->text());
    if (folder.isEmpty())
        return;
    m_txtBackupFolder->setText(QDir::toNativeSeparators(folder));
    setDataChanged(true);
}

void frmOptions::cmdBrowse_Click()
{
    basErrorHandler::Guard(QStringLiteral("frmOptions.cmdBrowse_Click"), [&] {
        const QString current = m_txtLogo->text();
        const QString path = Prompt::openFileName(tr("Select Organization Logo"), pictureFilter(),
                                                  current.isEmpty() ? QString() : QFileInfo(current).absolutePath());
        if (path.isEmpty())
            return;
        if (QImage(path).isNull()) {
            Prompt::message(tr("Select Organization Logo"),
                            tr("The file '%1' is not a picture TendMark can show.").arg(QDir::toNativeSeparators(path)),
                            Prompt::Icon::Exclamation, Prompt::Ok);
            return;
        }
        showLogo(path);
        setDataChanged(true);
    });
}
