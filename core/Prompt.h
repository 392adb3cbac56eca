#pragma once

#include "Query.h"

#include <QFont>
#include <QPageLayout>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

class QPagedPaintDevice;

// The one seam for every modal interaction. The program installs a handler that
// shows real dialogs; tests install one that records each request and answers
// from a script.
namespace Prompt {

enum class Icon { None, Information, Exclamation, Critical, Question };

enum Button { Ok = 0x1, Cancel = 0x2, Yes = 0x4, No = 0x8 };
using Buttons = int;

struct Message
{
    QString title;
    QString text;
    Icon icon = Icon::None;
    Buttons buttons = Ok;
    int defaultButton = 0;   // the button Enter presses; 0: the dialog's own choice
};

struct FileRequest
{
    bool save = false;
    bool folder = false;   // choose an existing folder rather than a file
    QString title;
    QString filter;   // Qt filter syntax: "Database Files (*.tmdb)"
    QString defaultSuffix;   // without the dot
    QString defaultName;   // save dialogs: the name offered
    QString directory;
};

// The record picker: rows of a query, first column the row's key.
struct PickRequest
{
    QString caption;
    QString label;
    Query query;
};

// A print preview of pages drawn on demand, from which the user prints them or
// saves them as a PDF file (or, when offered, as CSV). The calls return false when
// drawing or writing failed or was cancelled (and have said why to the user).
struct PreviewRequest
{
    QString caption;   // the preview window's caption
    QString pdfName;   // the file name offered when saving as PDF
    QString printerName;   // the printer to print on; empty for the default one
    QPageLayout pageLayout;
    std::function<bool(QPagedPaintDevice *device)> paint;
    std::function<bool(const QString &path)> savePdf;
    std::function<bool(const QString &path)> saveCsv;   // empty: no CSV
};

class Handler
{
public:
    virtual ~Handler() = default;
    virtual int message(const Message &m) = 0;
    virtual QString fileName(const FileRequest &r) = 0;   // empty when cancelled
    virtual std::optional<QString> pick(const PickRequest &r) = 0;   // the chosen key; none on Cancel
    virtual std::optional<QFont> font(const QString &title, const QFont &initial) = 0;
    virtual void preview(const PreviewRequest &r) = 0;   // returns when the preview is closed
};

// Installs the handler used from now on (not owned); nullptr restores the quiet default.
void setHandler(Handler *handler);
Handler *handler();

int message(const QString &title, const QString &text, Icon icon = Icon::None, Buttons buttons = Ok, int defaultButton = 0);
QString openFileName(const QString &title, const QString &filter, const QString &directory = {});
QString saveFileName(const QString &title, const QString &filter, const QString &defaultSuffix, const QString &defaultName = {},
                     const QString &directory = {});
QString folderName(const QString &title, const QString &directory = {});
std::optional<QString> pick(const PickRequest &request);
std::optional<QFont> font(const QString &title, const QFont &initial);
void preview(const PreviewRequest &request);

}   // namespace Prompt
