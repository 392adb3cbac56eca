#include "WidgetPrompts.h"

#include "frmSelect.h"

#include <QApplication>
#include <QFileDialog>
#include <QFontDialog>
#include <QMessageBox>

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
