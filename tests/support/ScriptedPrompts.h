#pragma once

#include "Prompt.h"

#include <QList>
#include <QStringList>

// Answers every modal question from a script and records what was asked.
// Installed for its lifetime. Unscripted message boxes answer Ok, else No, else Cancel.
class ScriptedPrompts : public Prompt::Handler
{
public:
    ScriptedPrompts();
    ~ScriptedPrompts() override;

    void answer(int button) { m_answers << button; }
    void answerFile(const QString &path) { m_files << path; }
    void answerPick(std::optional<QString> key) { m_picks << key; }

    const QList<Prompt::Message> &messages() const { return m_messages; }
    const QList<Prompt::FileRequest> &fileRequests() const { return m_fileRequests; }
    const QList<Prompt::PickRequest> &pickRequests() const { return m_pickRequests; }
    // Previews are recorded and closed at once; their pages can still be saved afterwards.
    const QList<Prompt::PreviewRequest> &previews() const { return m_previews; }
    Prompt::Message last() const { return m_messages.isEmpty() ? Prompt::Message {} : m_messages.last(); }
    QStringList titles() const;
    void clear();

    int message(const Prompt::Message &m) override;
    QString fileName(const Prompt::FileRequest &r) override;
    std::optional<QString> pick(const Prompt::PickRequest &r) override;
    std::optional<QFont> font(const QString &title, const QFont &initial) override;
    void preview(const Prompt::PreviewRequest &r) override;

private:
    QList<int> m_answers;
    QStringList m_files;
    QList<std::optional<QString>> m_picks;
    QList<Prompt::Message> m_messages;
    QList<Prompt::FileRequest> m_fileRequests;
    QList<Prompt::PickRequest> m_pickRequests;
    QList<Prompt::PreviewRequest> m_previews;
};

// Lets tests compare a whole message at once: QCOMPARE(prompts.last(), (Prompt::Message{title, text, icon, buttons})).
namespace Prompt {
inline bool operator==(const Message &a, const Message &b)
{
    return a.title == b.title && a.text == b.text && a.icon == b.icon && a.buttons == b.buttons;
}
inline char *toString(const Message &m)
{
    return qstrdup(qPrintable(QStringLiteral("[%1 | %2 | icon %3 | buttons %4]").arg(m.title, m.text).arg(int(m.icon)).arg(m.buttons)));
}
}   // namespace Prompt
