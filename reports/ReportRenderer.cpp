#include "ReportRenderer.h"

#include "ReportLayout.h"
#include "PrivateFiles.h"
#include "ReportPages.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryFile>

namespace ReportRenderer {

namespace {

bool hasCharts(const Report::Document &document)
{
    for (const Report::Block &b : document.blocks)
        if (b.kind == Report::Block::Chart)
            return true;
    return false;
}

}   // namespace

QPageLayout pageLayout()
{
    return ReportStyle::pageLayout();
}

QPageLayout pageLayout(const Report::Document &document)
{
    return ReportStyle::pageLayout(document.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
}

QList<ReportLayout::Page> layout(const Report::Document &document, const QPaintDevice *device)
{
    return ReportLayout::paginate(document, ReportLayout::Geometry(document, device));
}

bool render(const Report::Document &document, QPagedPaintDevice *device, const Report::Progress &progress, QString *error)
{
    // Charts are graphics items: they need the widgets' application object.
    if (hasCharts(document) && !qobject_cast<QApplication *>(QCoreApplication::instance())) {
        *error = QObject::tr("Charts can be drawn only by a program started with a graphical application object.");
        return false;
    }
    QPainter painter;
    if (!painter.begin(device)) {
        *error = QObject::tr("The printer or file could not be opened for the report's pages.");
        return false;
    }
    const ReportLayout::Geometry geometry(document, device);
    const QList<ReportLayout::Page> pages = ReportLayout::paginate(document, geometry);
    const ReportPages drawer(document, geometry);
    for (int i = 0; i < pages.size(); ++i) {
        if (progress && !progress(i, pages.size())) {
            painter.end();
            *error = QObject::tr("The report was cancelled.");
            return false;
        }
        if (i > 0 && !device->newPage()) {
            painter.end();
            *error = QObject::tr("The printer or file refused a new page.");
            return false;
        }
        drawer.draw(painter, pages[i], i + 1, int(pages.size()));
    }
    if (progress)
        progress(pages.size(), pages.size());
    if (!painter.end()) {
        *error = QObject::tr("The report's pages could not be finished.");
        return false;
    }
    return true;
}

bool writePdf(const Report::Document &document, const QString &path, const Report::Progress &progress, QString *error)
{
    const QFileInfo target(path);
    // The pages go to a file beside the target first, which then takes the target's
    // name in one step: the file appears whole or not at all.
    QTemporaryFile temp(target.absoluteDir().filePath(QStringLiteral(".%1.XXXXXX").arg(target.fileName())));
    if (!temp.open()) {
        *error = QObject::tr("The file %1 could not be written: %2").arg(QDir::toNativeSeparators(path), temp.errorString());
        return false;
    }
    temp.close();
    {
        QPdfWriter writer(temp.fileName());
        writer.setPageLayout(pageLayout(document));
        writer.setResolution(600);
        writer.setTitle(document.caption);
        writer.setCreator(QStringLiteral("TendMark"));
        if (!render(document, &writer, progress, error))
            return false;
    }
    if (QFileInfo(temp.fileName()).size() == 0) {
        *error = QObject::tr("The file %1 could not be written.").arg(QDir::toNativeSeparators(path));
        return false;
    }
    // Reports name clients: the file stays owner-only, as every file TendMark makes.
    QString reason;
    if (!PrivateFiles::MoveIntoPlace(temp.fileName(), target.absoluteFilePath(), &reason)) {
        *error = reason;
        return false;
    }
    temp.setAutoRemove(false);
    return true;
}

}   // namespace ReportRenderer
