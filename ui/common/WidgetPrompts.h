#pragma once

#include "Prompt.h"

// Shows the real dialogs: message boxes, file dialogs, the record picker, the font
// dialog and the print preview.
class WidgetPrompts : public Prompt::Handler
{
public:
    int message(const Prompt::Message &m) override;
    QString fileName(const Prompt::FileRequest &r) override;
    std::optional<QString> pick(const Prompt::PickRequest &r) override;
    std::optional<QFont> font(const QString &title, const QFont &initial) override;
    void preview(const Prompt::PreviewRequest &r) override;
};
