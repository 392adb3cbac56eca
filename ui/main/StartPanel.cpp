#include "StartPanel.h"

#include "AppIcons.h"

#include <QCommandLinkButton>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QPushButton *actionButton(QWidget *parent, const QString &name, const QString &text, const QIcon &icon)
{
    auto *b = new QPushButton(icon, text, parent);
    b->setObjectName(name);
    b->setIconSize(QSize(24, 24));
    b->setMinimumHeight(40);
    b->setCursor(Qt::PointingHandCursor);
    b->setStyleSheet(QStringLiteral("QPushButton { text-align: left; padding-left: 12px; }"));
    return b;
}

}   // namespace

StartPanel::StartPanel(QWidget *area) : QWidget(area), m_area(area)
{
    setObjectName(QStringLiteral("StartPanel"));
    auto *card = new QFrame(this);
    card->setObjectName(QStringLiteral("startCard"));
    card->setFixedWidth(500);
    card->setStyleSheet(QStringLiteral("#startCard { background: palette(base); border: 1px solid palette(mid); border-radius: 10px; }"));

    auto *icon = new QLabel(card);
    icon->setPixmap(AppIcons::application().pixmap(56, 56));
    auto *title = new QLabel(tr("Welcome to TendMark"), card);
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.7);
    big.setBold(true);
    title->setFont(big);
    auto *intro = new QLabel(tr("Open your pantry's database to begin, start a new one, "
                                "or look around in the demo database with made-up households."),
                             card);
    intro->setWordWrap(true);
    auto *heading = new QHBoxLayout;
    heading->addWidget(icon);
    heading->addSpacing(8);
    heading->addWidget(title, 1);

    auto *newButton
        = actionButton(card, QStringLiteral("cmdNewDatabase"), tr("New database..."), AppIcons::icon("document-new", QStyle::SP_FileIcon));
    auto *openButton = actionButton(card, QStringLiteral("cmdOpenDatabase"), tr("Open database..."),
                                    AppIcons::icon("document-open", QStyle::SP_DialogOpenButton));
    auto *demoButton = actionButton(card, QStringLiteral("cmdOpenDemo"), tr("Open the demo database"),
                                    AppIcons::icon("system-users", QStyle::SP_DirHomeIcon));
    openButton->setDefault(true);
    connect(newButton, &QPushButton::clicked, this, &StartPanel::newDatabaseRequested);
    connect(openButton, &QPushButton::clicked, this, &StartPanel::openDatabaseRequested);
    connect(demoButton, &QPushButton::clicked, this, &StartPanel::demoRequested);

    auto *recentTitle = new QLabel(tr("Recent databases"), card);
    QFont bold = recentTitle->font();
    bold.setBold(true);
    recentTitle->setFont(bold);
    m_recentTitle = recentTitle;
    m_recentList = new QVBoxLayout;
    m_recentList->setSpacing(0);

    auto *layout = new QVBoxLayout(card);
    layout->setContentsMargins(28, 24, 28, 24);
    layout->setSpacing(10);
    layout->addLayout(heading);
    layout->addWidget(intro);
    layout->addSpacing(6);
    layout->addWidget(newButton);
    layout->addWidget(openButton);
    layout->addWidget(demoButton);
    layout->addSpacing(10);
    layout->addWidget(m_recentTitle);
    layout->addLayout(m_recentList);

    auto *outer = new QVBoxLayout(this);
    outer->addStretch(1);
    outer->addWidget(card, 0, Qt::AlignHCenter);
    outer->addStretch(2);

    m_area->installEventFilter(this);
    setGeometry(m_area->rect());
    setRecentFiles({});
}

void StartPanel::setRecentFiles(const QStringList &paths)
{
    while (QLayoutItem *item = m_recentList->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const QString &path : paths) {
        const QFileInfo info(path);
        auto *b = new QCommandLinkButton(info.fileName(), QDir::toNativeSeparators(info.absolutePath()), this);
        b->setObjectName(QStringLiteral("cmdRecent"));
        b->setProperty("Path", path);
        b->setIcon(AppIcons::icon("document-open-recent", QStyle::SP_FileIcon));
        b->setCursor(Qt::PointingHandCursor);
        if (!info.exists()) {
            b->setEnabled(false);
            b->setDescription(b->description() + tr("  (not found)"));
            b->setToolTip(tr("This file is not there any more: it was moved, renamed, or is on a drive that is not connected."));
        }
        connect(b, &QCommandLinkButton::clicked, this, [this, path] { Q_EMIT recentRequested(path); });
        m_recentList->addWidget(b);
    }
    m_recentTitle->setVisible(!paths.isEmpty());
}

bool StartPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_area && event->type() == QEvent::Resize)
        setGeometry(m_area->rect());
    return QWidget::eventFilter(watched, event);
}
