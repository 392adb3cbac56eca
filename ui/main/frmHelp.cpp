#include "frmHelp.h"

#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTextStream>
#include <QToolBar>
#include <QVBoxLayout>

frmHelp::frmHelp(QWidget *parent) : QDialog(parent, Qt::Window)
{
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(tr("TendMark Help"));

    m_browser = new QTextBrowser(this);
    m_browser->setObjectName(QStringLiteral("txtHelp"));
    m_browser->setOpenExternalLinks(true);
    m_browser->setSearchPaths({QStringLiteral(":/guide")});

    auto *contents = new QListWidget(this);
    contents->setObjectName(QStringLiteral("lstContents"));
    const std::pair<const char *, const char *> pages[] = {
        {QT_TRANSLATE_NOOP("frmHelp", "Welcome"), "index.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Getting started"), "getting-started.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "The main window"), "main-window.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Clients and families"), "clients.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Food, payments, income and expenses"), "services.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Volunteers"), "volunteers.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Lookup tables"), "lookup-tables.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Filter and sort"), "filter-sort.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Reports"), "reports.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Mailing labels"), "labels.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Export"), "export.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Backup"), "backup.html"},
        {QT_TRANSLATE_NOOP("frmHelp", "Troubleshooting"), "troubleshooting.html"},
    };
    for (const auto &[title, page] : pages) {
        auto *item = new QListWidgetItem(tr(title), contents);
        item->setData(Qt::UserRole, QString::fromLatin1(page));
    }
    connect(contents, &QListWidget::itemActivated, this, [this](QListWidgetItem *item) { showPage(item->data(Qt::UserRole).toString()); });
    connect(contents, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { showPage(item->data(Qt::UserRole).toString()); });

    auto *indexPage = new QWidget(this);
    m_txtFilter = new QLineEdit(indexPage);
    m_txtFilter->setObjectName(QStringLiteral("txtFilter"));
    m_txtFilter->setPlaceholderText(tr("Type a word to look for"));
    m_txtFilter->setClearButtonEnabled(true);
    m_lstIndex = new QListWidget(indexPage);
    m_lstIndex->setObjectName(QStringLiteral("lstIndex"));
    for (const Keyword &k : readKeywords()) {
        auto *item = new QListWidgetItem(k.text, m_lstIndex);
        item->setData(Qt::UserRole, k.target);
    }
    auto *indexLayout = new QVBoxLayout(indexPage);
    indexLayout->setContentsMargins(0, 0, 0, 0);
    indexLayout->addWidget(m_txtFilter);
    indexLayout->addWidget(m_lstIndex, 1);
    connect(m_txtFilter, &QLineEdit::textChanged, this, &frmHelp::filterIndex);
    connect(m_txtFilter, &QLineEdit::returnPressed, this, [this] {
        for (int i = 0; i < m_lstIndex->count(); ++i)
            if (!m_lstIndex->item(i)->isHidden()) {
                m_lstIndex->setCurrentRow(i);
                showPage(m_lstIndex->item(i)->data(Qt::UserRole).toString());
                return;
            }
    });
    connect(m_lstIndex, &QListWidget::itemActivated, this,
            [this](QListWidgetItem *item) { showPage(item->data(Qt::UserRole).toString()); });
    connect(m_lstIndex, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { showPage(item->data(Qt::UserRole).toString()); });

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("tabHelp"));
    m_tabs->addTab(contents, tr("Contents"));
    m_tabs->addTab(indexPage, tr("Index"));

    auto *nav = new QToolBar(this);
    QAction *back = nav->addAction(tr("Back"), m_browser, &QTextBrowser::backward);
    QAction *forward = nav->addAction(tr("Forward"), m_browser, &QTextBrowser::forward);
    nav->addAction(tr("Home"), this, [this] { showPage(QStringLiteral("index.html")); });
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(m_browser, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(m_browser, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);

    auto *right = new QWidget(this);
    auto *rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->addWidget(nav);
    rightLayout->addWidget(m_browser, 1);

    auto *splitter = new QSplitter(this);
    splitter->addWidget(m_tabs);
    splitter->addWidget(right);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({260, 640});
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(splitter);
    resize(960, 680);
    showPage(QStringLiteral("index.html"));
}

QList<frmHelp::Keyword> frmHelp::readKeywords(const QString &path)
{
    QList<Keyword> keywords;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return keywords;
    QTextStream in(&file);
    while (!in.atEnd()) {
        const QString line = in.readLine();
        const int tab = line.indexOf(QLatin1Char('\t'));
        if (tab > 0 && tab < line.size() - 1)
            keywords << Keyword {line.left(tab).trimmed(), line.mid(tab + 1).trimmed()};
    }
    std::sort(keywords.begin(), keywords.end(),
              [](const Keyword &a, const Keyword &b) { return QString::compare(a.text, b.text, Qt::CaseInsensitive) < 0; });
    return keywords;
}

void frmHelp::filterIndex(const QString &text)
{
    const QString t = text.trimmed();
    for (int i = 0; i < m_lstIndex->count(); ++i)
        m_lstIndex->item(i)->setHidden(!m_lstIndex->item(i)->text().contains(t, Qt::CaseInsensitive));
}

void frmHelp::showPage(const QString &page)
{
    m_browser->setSource(QUrl(QStringLiteral("qrc:/guide/") + page));
}

void frmHelp::bringToFront()
{
    show();
    raise();
    activateWindow();
}

void frmHelp::showContents()
{
    m_tabs->setCurrentIndex(0);
    showPage(QStringLiteral("index.html"));
    bringToFront();
}

void frmHelp::showIndex()
{
    m_tabs->setCurrentIndex(1);
    bringToFront();
    m_txtFilter->setFocus();
    m_txtFilter->selectAll();
}
