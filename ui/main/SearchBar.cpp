#include "SearchBar.h"

#include "AppIcons.h"
#include "DatabaseSession.h"
#include "Prompt.h"
#include "SearchQueries.h"
#include "basErrorHandler.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>

SearchBar::SearchBar(QWidget *parent) : QToolBar(tr("Search Bar"), parent)
{
    setObjectName(QStringLiteral("tbrToolBar2"));
    setMovable(false);
    auto *searchOnCaption = new QLabel(tr(" Search on: "), this);
    searchOnCaption->setObjectName(QStringLiteral("txtSearchOnCaption"));
    m_cboSearchOn = new QComboBox(this);
    m_cboSearchOn->setObjectName(QStringLiteral("cboSearchOn"));
    m_cboSearchOn->setMinimumContentsLength(24);
    auto *searchForCaption = new QLabel(tr("  Search for: "), this);
    searchForCaption->setObjectName(QStringLiteral("txtSearchForCaption"));
    m_cboSearchFor = new QComboBox(this);
    m_cboSearchFor->setObjectName(QStringLiteral("cboSearchFor"));
    m_cboSearchFor->setEditable(true);
    m_cboSearchFor->setInsertPolicy(QComboBox::NoInsert);
    m_cboSearchFor->setMinimumContentsLength(24);
    addWidget(searchOnCaption);
    addWidget(m_cboSearchOn);
    addWidget(searchForCaption);
    addWidget(m_cboSearchFor);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_search = addAction(AppIcons::icon("edit-find", QStyle::SP_FileDialogContentsView), tr("Search"));
    m_search->setObjectName(QStringLiteral("tbrSearch"));
    m_search->setProperty("Key", QStringLiteral("Search"));
    m_search->setToolTip(tr("Find the records that match"));
    connect(m_search, &QAction::triggered, this, &SearchBar::cmdSearch_Click);
    connect(m_cboSearchOn, &QComboBox::currentTextChanged, this, &SearchBar::updateSearchButton);
    connect(m_cboSearchFor, &QComboBox::editTextChanged, this, &SearchBar::updateSearchButton);
    connect(m_cboSearchFor->lineEdit(), &QLineEdit::returnPressed, this, [this] {
        if (m_search->isEnabled())
            cmdSearch_Click();
    });
    offer(false);
}

void SearchBar::setKind(MdiChild::Kind kind)
{
    m_kind = kind;
    AddSearchForItem();
}

void SearchBar::offer(bool enabled)
{
    m_cboSearchOn->setEnabled(enabled);
    m_cboSearchFor->setEnabled(enabled);
    updateSearchButton();
}

void SearchBar::updateSearchButton()
{
    m_search->setEnabled(m_cboSearchOn->isEnabled() && !m_cboSearchOn->currentText().isEmpty() && !m_cboSearchFor->currentText().isEmpty());
}

void SearchBar::AddSearchForItem()
{
    const QStringList fields = m_kind == MdiChild::Kind::Volunteer ? SearchQueries::volunteerFields() : SearchQueries::clientFields();
    QStringList current;
    for (int i = 0; i < m_cboSearchOn->count(); ++i)
        current << m_cboSearchOn->itemData(i).toString();
    if (current == fields)
        return;
    m_cboSearchOn->clear();
    for (const QString &field : fields)
        m_cboSearchOn->addItem(QCoreApplication::translate("SearchQueries", field.toUtf8().constData()), field);
}

void SearchBar::cmdSearch_Click()
{
    if (!DatabaseSession::requireDatabase())
        return;
    if (m_kind == MdiChild::Kind::Volunteer)
        SearchForVolunteer();
    else
        SearchForClient();
}

void SearchBar::SearchForClient()
{
    basErrorHandler::Guard(QStringLiteral("frmMain.SearchForClient"), [this] {
        runSearch(SearchQueries::client(m_cboSearchOn->currentData().toString(), m_cboSearchFor->currentText()), MdiChild::Kind::Client);
    });
}

void SearchBar::SearchForVolunteer()
{
    basErrorHandler::Guard(QStringLiteral("frmMain.SearchForVolunteer"), [this] {
        runSearch(SearchQueries::volunteer(m_cboSearchOn->currentData().toString(), m_cboSearchFor->currentText()),
                  MdiChild::Kind::Volunteer);
    });
}

void SearchBar::runSearch(const SearchQueries::Query &query, MdiChild::Kind kind)
{
    if (!query.problem.isEmpty()) {
        Prompt::message(tr("Data Entry Error"), query.problem, Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    const QString typed = m_cboSearchFor->currentText();
    if (m_cboSearchFor->findText(typed) < 0) {
        m_cboSearchFor->insertItem(0, typed);
        while (m_cboSearchFor->count() > 10)
            m_cboSearchFor->removeItem(m_cboSearchFor->count() - 1);
        m_cboSearchFor->setCurrentText(typed);
    }
    const SearchQueries::Outcome outcome = SearchQueries::run(query);
    if (outcome.count == 0) {
        Prompt::message(tr("No Record Found"), tr("No record was found matching the specified criteria."), Prompt::Icon::None, Prompt::Ok);
        return;
    }
    QString key = outcome.onlyKey;
    if (outcome.count > 1) {
        Prompt::PickRequest request;
        request.caption = kind == MdiChild::Kind::Volunteer ? tr("Select Volunteer") : tr("Select Client");
        request.label = tr("%1 entries were found that match the specified criteria. \r\nSelect an entry from the list, then click 'OK'.")
                            .arg(outcome.count);
        request.query = outcome.shown;
        const std::optional<QString> chosen = Prompt::pick(request);
        if (!chosen)
            return;
        key = *chosen;
    }
    Q_EMIT recordFound(kind, key);
}
