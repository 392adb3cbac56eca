#pragma once

#include <QTranslator>

// Marks the texts it translates as "[text]" (those of one context, or all), so a test can tell what is shown translated.
class MarkingTranslator : public QTranslator
{
public:
    explicit MarkingTranslator(const char *context = nullptr) : m_context(context) { }
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        const bool marked = *sourceText && (!m_context || qstrcmp(context, m_context) == 0);
        return marked ? QStringLiteral("[%1]").arg(QString::fromUtf8(sourceText)) : QString();
    }

private:
    const char *m_context;
};
