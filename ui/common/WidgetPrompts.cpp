#include "WidgetPrompts.h"

#include "frmSelect.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QFontDialog>
#include <QHash>
#include <QMessageBox>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QRegularExpression>
#include <QScreen>
#include <QToolBar>

int WidgetPrompts::message(const Prompt::Message &m)
{
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(m.title);
    box.setText(m.text);
    switch (m.icon) {
    case Prompt::Icon::None:
        box.setIcon(QMessageBox::NoIcon);
        break;
    case Prompt::Icon::Information:
        box.setIcon(QMessageBox::Information);
        break;
    case Prompt::Icon::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case Prompt::Icon::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    case Prompt::Icon::Question:
        box.setIcon(QMessageBox::Question);
        break;
    }
    QMessageBox::StandardButtons buttons;
    if (m.buttons & Prompt::Ok)
        buttons |= QMessageBox::Ok;
    if (m.buttons & Prompt::Yes)
        buttons |= QMessageBox::Yes;
    if (m.buttons & Prompt::No)
        buttons |= QMessageBox::No;
    if (m.buttons & Prompt::Cancel)
        buttons |= QMessageBox::Cancel;
    box.setStandardButtons(buttons);
    const QHash<int, QMessageBox::StandardButton> standard {{Prompt::Ok, QMessageBox::Ok},
                                                            {Prompt::Yes, QMessageBox::Yes},
                                                            {Prompt::No, QMessageBox::No},
                                                            {Prompt::Cancel, QMessageBox::Cancel}};
    if (m.defaultButton)
        box.setDefaultButton(standard.value(m.defaultButton, QMessageBox::NoButton));
    switch (box.exec()) {
    case QMessageBox::Yes:
        return Prompt::Yes;
    case QMessageBox::No:
        return Prompt::No;
    case QMessageBox::Cancel:
        return Prompt::Cancel;
    default:
        return (m.buttons & Prompt::Ok) ? Prompt::Ok : Prompt::Cancel;
    }
}

QString WidgetPrompts::fileName(const Prompt::FileRequest &r)
{
    QFileDialog dialog(QApplication::activeWindow(), r.title, r.directory, r.filter);
    dialog.setAcceptMode(r.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(r.folder ? QFileDialog::Directory : r.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (!r.defaultSuffix.isEmpty())
        dialog.setDefaultSuffix(r.defaultSuffix);
    if (!r.defaultName.isEmpty())
        dialog.selectFile(r.defaultName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().constFirst();
}

std::optional<QString> WidgetPrompts::pick(const Prompt::PickRequest &r)
{
    return frmSelect::pick(r, QApplication::activeWindow());
}

std::optional<QFont> WidgetPrompts::font(const QString &title, const QFont &initial)
{
    bool ok = false;
    const QFont f = QFontDialog::getFont(&ok, initial, QApplication::activeWindow(), title);
    if (!ok)
        return std::nullopt;
    return f;
}

void WidgetPrompts::preview(const Prompt::PreviewRequest &r)
{
    QPrinter printer(QPrinter::HighResolution);
    if (!r.printerName.isEmpty())
        printer.setPrinterName(r.printerName);
    printer.setPageLayout(r.pageLayout);
    printer.setDocName(r.caption);
    QPrintPreviewDialog dialog(&printer, QApplication::activeWindow());
    dialog.setWindowTitle(r.caption);
    dialog.setWindowModality(Qt::ApplicationModal);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog, [&r](QPrinter *device) { r.paint(device); });
    // The dialog prints; saving a PDF file of the same pages is a button of ours.
    if (auto *bar = dialog.findChild<QToolBar *>(); bar && r.savePdf) {
        bar->addSeparator();
        QAction *save = bar->addAction(QObject::tr("Save as PDF..."));
        save->setObjectName(QStringLiteral("actSaveAsPdf"));
        save->setToolTip(QObject::tr("Save these pages as a PDF file"));
        QObject::connect(save, &QAction::triggered, &dialog, [&r] {
            const QString path
                = Prompt::saveFileName(QObject::tr("Save as PDF"), QObject::tr("PDF Files (*.pdf)"), QStringLiteral("pdf"), r.pdfName);
            if (!path.isEmpty())
                r.savePdf(path);
        });
    }
    if (auto *bar = dialog.findChild<QToolBar *>(); bar && r.saveCsv) {
        QAction *save = bar->addAction(QObject::tr("Save as CSV..."));
        save->setObjectName(QStringLiteral("actSaveAsCsv"));
        save->setToolTip(QObject::tr("Save the report's figures as a CSV file"));
        QObject::connect(save, &QAction::triggered, &dialog, [&r] {
            QString name = r.pdfName;
            name.replace(QRegularExpression(QStringLiteral("\\.pdf$")), QStringLiteral(".csv"));
            const QString path
                = Prompt::saveFileName(QObject::tr("Save as CSV"), QObject::tr("CSV Files (*.csv)"), QStringLiteral("csv"), name);
            if (!path.isEmpty())
                r.saveCsv(path);
        });
    }
    if (const QScreen *screen = dialog.screen())
        dialog.resize(screen->availableSize() * 0.85);
    dialog.exec();
}
