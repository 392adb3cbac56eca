#include "frmClientDetails.h"

#include "ClientRules.h"
#include "ClientSubGrid.h"
#include "DataBinding.h"
#include "Prompt.h"
#include "Recordset.h"
#include "basClient.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basTendmark.h"
#include "RecordQueries.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTabWidget>
#include <QTimer>

namespace {

const char *const kCaption = QT_TRANSLATE_NOOP("frmClientDetails", "Client Details");

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

}   // namespace

frmClientDetails::frmClientDetails(Workspace *main, const QString &clientId)
    : MdiChild(main)
    , m_fields(new BoundFields(this, BoundFields::SelectOnEntry::MaskedOnly))
{
    setObjectName(QStringLiteral("frmClientDetails"));
    setWindowTitle(tr(kCaption));
    m_sql = RecordQueries::clientsByName();
    m_rs = new Recordset(this);
    connect(m_fields, &BoundFields::edited, this, &frmClientDetails::markChanged);
    m_fields->setLeaveCheck([this](QWidget *c) { validateOnLeave(c); });
    m_fields->setFieldOf([](const QWidget *c) { return basDatabase::Field(QStringLiteral("Client"), basTendmark::DataField(c)); });
    buildForm();
    connect(tabData, &QTabWidget::currentChanged, this, [this](int tab) {
        if (ClientSubGrid *rows = m_grids.value(Tab(tab)))
            basErrorHandler::Guard(QStringLiteral("frmClientDetails.tabData_Click"), [rows] { rows->fillIfLater(); });
    });
    m_fields->setLoading(true);
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.Form_Load"), [&] {
        fillCombos();
        m_rs->open(QStringLiteral("Client"), QStringLiteral("ClientID"), m_sql);
    });
    m_fields->setLoading(false);
    ShowTabs();
    if (clientId == QLatin1String("ADD") || !m_rs->isOpen()) {
        AddRecord();
        DisplayClient();
    } else if (clientId.isEmpty()) {
        displayCurrent();
    } else {
        goToClient(clientId);
    }
    m_strip->watchKeys();
}

void frmClientDetails::fillCombos()
{
    auto fill = [this](const QString &field, const QString &table, const QString &key, const QString &display) {
        if (auto *combo = qobject_cast<QComboBox *>(control(field)))
            basTendmark::PopulateDataCombo(combo, table, key, display);
    };
    for (const char *field : {"State", "EmployerState"})
        fill(QLatin1String(field), QStringLiteral("States"), QStringLiteral("StateID"), QStringLiteral("StateCode"));
    fill(QStringLiteral("Gender"), QStringLiteral("Gender"), QStringLiteral("GenderID"), QStringLiteral("GenderCode"));
    for (const char *field : {"ZipCode", "EmployerZip"})
        if (auto *combo = qobject_cast<QComboBox *>(control(QLatin1String(field))))
            basTendmark::PopulateZipCombo(combo);
    basTendmark::PopulateLookupCombos(m_fields->controls(), QStringLiteral("Client"));
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
    m_fields->setLoading(true);
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.DisplayClient"), [&] {
        m_clientId = m_rs->editMode() == Recordset::EditMode::Adding ? QString() : m_rs->key().toString();
        m_fields->fill(*m_rs);
        PopulateGrids();
        FlagTabs();
        DisplayRecordPosition();
        showHousehold();
    });
    m_dataChanged = false;
    m_fields->setLoading(false);
    Q_EMIT commandsChanged();
}

void frmClientDetails::DisplayRecordPosition()
{
    m_strip->showPosition(m_rs->absolutePosition(), m_rs->recordCount(), m_clientId);
}

void frmClientDetails::showHousehold()
{
    if (m_clientId.isEmpty()) {
        lblClientName->setText(tr("New client"));
        lblHousehold->clear();
        return;
    }
    const QString last = m_rs->value(QStringLiteral("LastName")).toString();
    lblClientName->setText(basClient::DeleteName(last, m_rs->value(QStringLiteral("FirstName")).toString(),
                                                 m_rs->value(QStringLiteral("MiddleInitial")).toString(), false)
                               .trimmed());
    const RecordQueries::Household household = RecordQueries::household(m_clientId.toLongLong());
    const QString lastVisit
        = household.lastFoodService.isNull() ? QStringLiteral("none") : basTendmark::FormatDate(household.lastFoodService);
    lblHousehold->setText(tr("Household: %1   Last food service: %2").arg(household.members).arg(lastVisit));
}

// Only the lists in view are read; the others when their tab is chosen.
void frmClientDetails::PopulateGrids()
{
    const QList<ClientRecordQueries::Kind> withRows
        = m_clientId.isEmpty() ? QList<ClientRecordQueries::Kind> {} : ClientRecordQueries::kindsWithRows(m_clientId.toLongLong());
    for (auto it = m_grids.constBegin(); it != m_grids.constEnd(); ++it) {
        if (it.key() == tabData->currentIndex())
            it.value()->showClient(m_clientId);
        else
            it.value()->showClientLater(m_clientId, withRows);
    }
}

void frmClientDetails::FlagTabs()
{
    static const QIcon icon = dataIcon();
    QList<bool> hasData(9, false);
    for (QWidget *c : m_fields->controls()) {
        QWidget *page = c;
        while (page && tabData->indexOf(page) < 0)
            page = page->parentWidget();
        if (!page)
            continue;
        const QString value = basTendmark::GetControlValue(c, m_rs->field(basTendmark::DataField(c)));
        if (!value.isEmpty() && value != QLatin1String("False"))
            hasData[tabData->indexOf(page)] = true;
    }
    for (auto it = m_grids.constBegin(); it != m_grids.constEnd(); ++it)
        if (it.value()->hasRows())
            hasData[it.key()] = true;
    for (int i = 0; i < tabData->count(); ++i) {
        tabData->setTabIcon(i, hasData.at(i) ? icon : QIcon());
        tabData->setTabText(i, hasData.at(i) ? m_tabCaptions.at(i) + QLatin1Char(' ') : m_tabCaptions.at(i));
    }
}

void frmClientDetails::ShowTabs()
{
    const OptionFlags &flags = workspace()->optionFlags();
    const std::pair<Tab, bool OptionFlags::*> shown[] = {
        {NotesTab, &OptionFlags::showNotesTab},
        {EmployerTab, &OptionFlags::showEmployerTab},
        {FamilyTab, &OptionFlags::showFamilyMembersTab},
        {FoodServiceTab, &OptionFlags::showFoodServiceTab},
        {PaymentTab, &OptionFlags::showPaymentHistoryTab},
        {IncomeExpensesTab, &OptionFlags::showIncomeExpensesTab},
        {HealthTab, &OptionFlags::showHealthMedicalTab},
        {FEMATab, &OptionFlags::showFEMATab},
        {FormerAddressTab, &OptionFlags::showFormerAddressTab},
    };
    for (const auto &[tab, member] : shown)
        tabData->setTabVisible(tab, flags.*member);
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

void frmClientDetails::activated()
{
    ShowTabs();
}

void frmClientDetails::refillForClient(const QString &clientId)
{
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.Form_Activate"), [&] {
        const QString shown = m_clientId;
        m_rs->resync();
        if (!shown.isEmpty() && m_rs->key().toString() != shown) {
            // Deleted in another window: nothing is left to save into.
            if (m_dataChanged)
                Prompt::message(tr("Client Deleted"),
                                tr("This client was deleted in another window. The changes made here were not saved."),
                                Prompt::Icon::Exclamation, Prompt::Ok);
            if (m_rs->recordCount() == 0)
                AddRecord();
            DisplayClient();
            return;
        }
        DisplayRecordPosition();
        if (clientId != shown)
            return;
        PopulateGrids();
        FlagTabs();
        showHousehold();
    });
}

// ---------------------------------------------------------------- editing

void frmClientDetails::markChanged()
{
    m_dataChanged = true;
    Q_EMIT commandsChanged();
}

void frmClientDetails::PopulateCityState(QWidget *zip)
{
    if (m_fields->loading())
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
    return ClientRules::valueIsValid(m_rs->field(basTendmark::DataField(c)), value, message);
}

bool frmClientDetails::validateOnLeave(QWidget *c)
{
    if (qobject_cast<QCheckBox *>(c))
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
    Prompt::message(tr("Data Entry Error"), m_fields->caption(c) + message, Prompt::Icon::Exclamation, Prompt::Ok);
    focusControl(c);
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

bool frmClientDetails::UpdateFields()
{
    for (QWidget *c : m_fields->controls()) {
        const QString column = basTendmark::DataField(c);
        const QString value = basTendmark::GetControlValue(c, m_rs->field(column));
        const QString caption = m_fields->caption(c);
        if (basTendmark::IsRequired(c) && value.trimmed().isEmpty()) {
            Prompt::message(tr("Required Field Empty"), tr("%1 is required.").arg(caption), Prompt::Icon::Exclamation, Prompt::Ok);
            focusControl(c);
            return false;
        }
        if (value == basTendmark::GetFieldValue(*m_rs, column))
            continue;
        auto *combo = qobject_cast<QComboBox *>(c);
        QString message;
        if (!value.isEmpty() && !(combo && !combo->isEditable()) && !checkValue(c, value, message)) {
            Prompt::message(tr("Data Entry Error"), caption + message, Prompt::Icon::Exclamation, Prompt::Ok);
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
    request.caption = tr("Client Already On File?");
    request.label = tr(
        "The entered address is already on file for another client. Select an entry from the following the list and click 'OK' to go to that client "
        "record. Click 'Cancel' to continue saving the current record.");
    const bool found = basDatabase::MatchAddress(m_clientId, value("Address"), value("City"), value("State"), request);
    return offerDuplicates(found, request);
}

bool frmClientDetails::SSNIsOnFile()
{
    const QString ssn = basTendmark::GetControlValue(control(QStringLiteral("SocialSecurityNumber")), {});
    if (ssn.isEmpty())
        return false;
    Prompt::PickRequest request;
    request.caption = tr("Client Already On File?");
    request.label = tr(
        "The entered Social Security Number is already on file for another client. Select an entry from the following the list and click 'OK' to go to that client "
        "record. Click 'Cancel' to continue saving the current record.");
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
    m_rs->resync();   // a new or renamed client takes its place in the order
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

bool frmClientDetails::SaveCurrentRecord()
{
    return UpdateRecord();
}

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
    focusControl(m_fields->controls().first());
}

void frmClientDetails::navigate(NavigationStrip::Move move)
{
    static const char *const names[] = {"cmdFirst_Click", "cmdPrevious_Click", "cmdNext_Click", "cmdLast_Click"};
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.") + QLatin1String(names[int(move)]), [&] {
        if (!UpdateRecord())
            return;
        if (m_rs->recordCount() == 0)
            return;
        NavigationStrip::step(*m_rs, move);
        DisplayClient();
    });
}

void frmClientDetails::goToClient(const QString &id)
{
    basErrorHandler::Guard(QStringLiteral("frmClientDetails.ClientID"), [&] {
        if (id == QLatin1String("ADD")) {
            AddRecord();
            DisplayClient();
            focusControl(m_fields->controls().first());
            return;
        }
        if (!m_rs->find(id)) {
            Prompt::message(tr("Application Error"), tr("Error retrieving record."), Prompt::Icon::Exclamation, Prompt::Ok);
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
    const int answer = Prompt::message(tr("Save Record?"), tr("Current record has changed. Do you want to save it?"),
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

void frmClientDetails::showRecord(const QString &id)
{
    setClientID(id);
}

bool frmClientDetails::queryUnload()
{
    return askToSave();
}

void frmClientDetails::setSQL(const QString &sql)
{
    m_sql = RecordQueries::clientsByName(sql);
    setWindowTitle(sql.isEmpty() ? tr(kCaption) : tr("%1 (Filter Applied)").arg(tr(kCaption)));
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
        auto shown = [this](const char *field) { return basTendmark::GetControlValue(control(QString::fromLatin1(field)), {}); };
        const QString name = basClient::DeleteName(shown("LastName"), shown("FirstName"), shown("MiddleInitial"), false);
        if (!basClient::DeleteClient(*m_rs, m_clientId, name))
            return;
        if (m_rs->recordCount() == 0)
            AddRecord();
        DisplayClient();
        announceClientRecordsChanged(deleted);
    });
}

int frmClientDetails::recordCount() const
{
    return m_rs->recordCount();
}
