#include "ScriptedPrompts.h"

ScriptedPrompts::ScriptedPrompts()
{
    Prompt::setHandler(this);
}

ScriptedPrompts::~ScriptedPrompts()
{
    Prompt::setHandler(nullptr);
}

QStringList ScriptedPrompts::titles() const
{
    QStringList t;
    for (const Prompt::Message &m : m_messages)
        t << m.title;
    return t;
}

void ScriptedPrompts::clear()
{
    m_messages.clear();
    m_fileRequests.clear();
    m_pickRequests.clear();
    m_previews.clear();
}

int ScriptedPrompts::message(const Prompt::Message &m)
{
    m_messages << m;
    if (!m_answers.isEmpty())
        return m_answers.takeFirst();
    if (m.buttons & Prompt::Ok)
        return Prompt::Ok;
    if (m.buttons & Prompt::No)
        return Prompt::No;
    return Prompt::Cancel;
}

QString ScriptedPrompts::fileName(const Prompt::FileRequest &r)
{
    m_fileRequests << r;
    return m_files.isEmpty() ? QString() : m_files.takeFirst();
}

std::optional<QString> ScriptedPrompts::pick(const Prompt::PickRequest &r)
{
    m_pickRequests << r;
    return m_picks.isEmpty() ? std::nullopt : m_picks.takeFirst();
}

std::optional<QFont> ScriptedPrompts::font(const QString &, const QFont &)
{
    return std::nullopt;
}

void ScriptedPrompts::preview(const Prompt::PreviewRequest &r)
{
    m_previews << r;
}
