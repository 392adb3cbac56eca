#pragma once

#include <QString>
#include <stdexcept>

// An unexpected failure: the database refused a statement, a file could not be
// written. Procedures catch it and hand it to basErrorHandler::ReportError.
class TmError : public std::runtime_error
{
public:
    TmError(int number, const QString &description, int line = 0)
        : std::runtime_error(description.toStdString())
        , m_number(number)
        , m_description(description)
        , m_line(line)
    { }

    int number() const { return m_number; }
    const QString &description() const { return m_description; }
    int line() const { return m_line; }
    // For a fault of the world outside (disk full, file moved...): what to tell the user instead of the details.
    const QString &plainWords() const { return m_plainWords; }
    void setPlainWords(const QString &words) { m_plainWords = words; }

private:
    QString m_plainWords;
    int m_number;
    QString m_description;
    int m_line;
};
