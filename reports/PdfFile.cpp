#include "PdfFile.h"

#include "PrivateFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QObject>
#include <QPdfWriter>
#include <QTemporaryFile>

namespace PdfFile {

bool write(const QString &path, const QPageLayout &layout, const QString &title, const std::function<bool(QPdfWriter &, QString *)> &draw,
           QString *error)
{
    const QFileInfo target(path);
    QTemporaryFile temp(target.absoluteDir().filePath(QStringLiteral(".%1.XXXXXX").arg(target.fileName())));
    if (!temp.open()) {
        *error = QObject::tr("The file %1 could not be written: %2").arg(QDir::toNativeSeparators(path), temp.errorString());
        return false;
    }
    temp.close();
    {
        QPdfWriter writer(temp.fileName());
        writer.setPageLayout(layout);
        writer.setResolution(600);
        writer.setTitle(title);
        writer.setCreator(QStringLiteral("TendMark"));
        if (!draw(writer, error))
            return false;
    }
    if (QFileInfo(temp.fileName()).size() == 0) {
        *error = QObject::tr("The file %1 could not be written.").arg(QDir::toNativeSeparators(path));
        return false;
    }
    // Reports and labels name clients: the file stays owner-only, as every file TendMark makes.
    QString reason;
    if (!PrivateFiles::MoveIntoPlace(temp.fileName(), target.absoluteFilePath(), &reason)) {
        *error = reason;
        return false;
    }
    temp.setAutoRemove(false);
    return true;
}

}   // namespace PdfFile
