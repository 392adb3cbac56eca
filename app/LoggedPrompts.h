#pragma once

#include "Prompt.h"

#include <QString>

// Unattended runs (TENDMARK_PROMPT_LOG names a file): every question is written
// to that file, one line each, instead of being shown, and answered the safe way:
// Ok when offered, else No, else Cancel; file dialogs and the picker are cancelled,
// previews closed at once.
class LoggedPrompts : public Prompt::Handler
{
public:
    explicit LoggedPrompts(const QString &path) : m_path(path) { }

    int message(const Prompt::Message &m) override;
    QString fileName(const Prompt::FileRequest &r) override;
    std::optional<QString> pick(const Prompt::PickRequest &r) override;
    std::optional<QFont> font(const QString &title, const QFont &initial) override;
    void preview(const Prompt::PreviewRequest &r) override;

private:
    void write(const QString &kind, const QString &title, const QString &text, int icon = 0, int buttons = 0);
    QString m_path;
};
