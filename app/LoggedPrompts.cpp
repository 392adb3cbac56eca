#include "LoggedPrompts.h"

#include <QFile>
#include <QTextStream>

void LoggedPrompts::write(const QString &kind, const QString &title, const QString &text, int icon, int buttons)
{
    QFile file(m_path);
    // Questions name clients: the log is the user's alone.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text, QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return;
    QTextStream out(&file);
    // Tab-separated: kind, title, icon, buttons, text (line breaks written as \n).
    out << kind << '\t' << title << '\t' << icon << '\t' << buttons << '\t'
        << QString(text).replace(QLatin1String("\r\n"), QLatin1String("\\n")).replace(QLatin1Char('\n'), QLatin1String("\\n")) << '\n';
}

int LoggedPrompts::message(const Prompt::Message &m)
{
    write(QStringLiteral("message"), m.title, m.text, int(m.icon), m.buttons);
    for (const Prompt::Button b : {Prompt::Ok, Prompt::No, Prompt::Cancel})
        if (m.buttons & b)
            return b;
    return Prompt::Cancel;
}

QString LoggedPrompts::fileName(const Prompt::FileRequest &r)
{
    write(QStringLiteral("file"), r.title, r.filter);
    return {};
}

std::optional<QString> LoggedPrompts::pick(const Prompt::PickRequest &r)
{
    write(QStringLiteral("pick"), r.caption, r.label);
    return std::nullopt;
}

std::optional<QFont> LoggedPrompts::font(const QString &title, const QFont &)
{
    write(QStringLiteral("font"), title, {});
    return std::nullopt;
}

void LoggedPrompts::preview(const Prompt::PreviewRequest &r)
{
    write(QStringLiteral("preview"), r.caption, r.pdfName);
}
