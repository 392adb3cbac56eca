#include "frmConvertAccess.h"

#include "MdbConvert.h"
#include "Prompt.h"
#include "Schema.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

frmConvertAccess::frmConvertAccess(QWidget *parent) : QWidget(parent, Qt::Dialog)
{
    setObjectName(QStringLiteral("frmConvertAccess"));
    setWindowTitle(tr("Open Access Database"));
    setWindowModality(Qt::ApplicationModal);
    lblTable = new QLabel(this);
    lblTable->setObjectName(QStringLiteral("lblTable"));
    prgTables = new QProgressBar(this);
    prgTables->setObjectName(QStringLiteral("prgTables"));
    cmdCancel = new QPushButton(tr("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(cmdCancel, &QPushButton::clicked, this, [this] { m_cancelled = true; });
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblTable);
    layout->addWidget(prgTables);
    layout->addLayout(buttons);
    setMinimumWidth(420);
}

bool frmConvertAccess::step(int table, int tables, const QString &name, qint64 rows)
{
    lblTable->setText(rows > 0 ? tr("Copying %1 (table %2 of %3): %L4 rows...").arg(name).arg(table + 1).arg(tables).arg(rows)
                               : tr("Copying %1 (table %2 of %3)...").arg(name).arg(table + 1).arg(tables));
    prgTables->setRange(0, tables);
    prgTables->setValue(table);
    QApplication::processEvents();
    return !m_cancelled;
}

QString frmConvertAccess::Filter()
{
    return tr("Access Databases (*.mdb)");
}

bool frmConvertAccess::IsAccessFile(const QString &path)
{
    return QFileInfo(path).suffix().compare(QLatin1String("mdb"), Qt::CaseInsensitive) == 0;
}

QString frmConvertAccess::Convert(QWidget *parent, const QString &accessFile)
{
    const QFileInfo source(accessFile);
    const QString target = source.absoluteDir().filePath(source.completeBaseName() + u'.' + QLatin1String(Schema::FileSuffix));
    const QString title = tr("Open Access Database");
    const QString sourceName = source.fileName();
    const QString targetName = QFileInfo(target).fileName();
    if (Prompt::message(title,
                        tr("%1 is an Access database. TendMark will copy it into a new TendMark file beside it, %2, and open that.\r\n"
                           "The Access file itself is never changed.")
                            .arg(sourceName, targetName),
                        Prompt::Icon::Information, Prompt::Ok | Prompt::Cancel)
        != Prompt::Ok)
        return {};
    const bool replace = QFileInfo::exists(target);
    if (replace
        && Prompt::message(title, tr("%1 already exists. Do you want to replace it with a new copy of %2?").arg(targetName, sourceName),
                           Prompt::Icon::Question, Prompt::Yes | Prompt::No)
            != Prompt::Yes)
        return {};
    frmConvertAccess window(parent);
    window.show();
    const MdbConvert::Report report = MdbConvert::ConvertFile(
        accessFile, target, replace, [&window](const MdbConvert::Step &s) { return window.step(s.table, s.tables, s.name, s.rows); });
    window.close();
    if (!report.ok) {
        Prompt::message(title,
                        report.cancelled ? MdbConvert::Describe(report).join(QString())
                                         : tr("%1 was not converted.\r\n%2").arg(sourceName, report.error),
                        report.cancelled ? Prompt::Icon::Information : Prompt::Icon::Exclamation, Prompt::Ok);
        return {};
    }
    // The whole report beside the new file; the message shows the first changes only.
    const QString heading = tr("%1 was copied into %2.").arg(sourceName, QDir::toNativeSeparators(target));
    const QString reportFile = source.absoluteDir().filePath(tr("%1 conversion report.txt").arg(source.completeBaseName()));
    QString error;
    const QString saved = MdbConvert::SaveReport(reportFile, QStringList {heading} + MdbConvert::Describe(report), &error)
        ? tr("The whole report is saved as %1.").arg(QDir::toNativeSeparators(reportFile))
        : error;
    Prompt::message(title,
                    heading + QStringLiteral("\r\n\r\n") + MdbConvert::Describe(report, 20).join(QStringLiteral("\r\n"))
                        + QStringLiteral("\r\n\r\n") + saved,
                    Prompt::Icon::Information, Prompt::Ok);
    return target;
}
