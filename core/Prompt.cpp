#include "Prompt.h"

#include <QTextStream>

namespace Prompt {
namespace {

// Used where no dialogs can be shown (the command-line tool): says what it would
// have asked on standard error and takes the first button.
class QuietHandler : public Handler
{
public:
    int message(const Message &m) override
    {
        QTextStream(stderr) << m.title << ": " << m.text << '\n';
        for (Button b : {Ok, Yes, No, Cancel})
            if (m.buttons & b)
                return b;
        return Ok;
    }
    QString fileName(const FileRequest &) override { return {}; }
    std::optional<QString> pick(const PickRequest &) override { return std::nullopt; }
    std::optional<QFont> font(const QString &, const QFont &) override { return std::nullopt; }
    void preview(const PreviewRequest &) override { }
};

QuietHandler quiet;
Handler *current = &quiet;

}   // namespace

void setHandler(Handler *h)
{
    current = h ? h : &quiet;
}
Handler *handler()
{
    return current;
}

int message(const QString &title, const QString &text, Icon icon, Buttons buttons, int defaultButton)
{
    return current->message({title, text, icon, buttons, defaultButton});
}

QString folderName(const QString &title, const QString &directory)
{
    FileRequest r;
    r.folder = true;
    r.title = title;
    r.directory = directory;
    return current->fileName(r);
}

QString openFileName(const QString &title, const QString &filter, const QString &directory)
{
    FileRequest r;
    r.title = title;
    r.filter = filter;
    r.directory = directory;
    return current->fileName(r);
}

QString saveFileName(const QString &title, const QString &filter, const QString &defaultSuffix, const QString &defaultName,
                     const QString &directory)
{
    FileRequest r;
    r.save = true;
    r.title = title;
    r.filter = filter;
    r.defaultSuffix = defaultSuffix;
    r.defaultName = defaultName;
    r.directory = directory;
    return current->fileName(r);
}

std::optional<QString> pick(const PickRequest &request)
{
    return current->pick(request);
}

std::optional<QFont> font(const QString &title, const QFont &initial)
{
    return current->font(title, initial);
}

void preview(const PreviewRequest &request)
{
    current->preview(request);
}

}   // namespace Prompt
