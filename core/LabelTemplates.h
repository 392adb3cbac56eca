#pragma once

#include <QList>
#include <QPageSize>
#include <QSizeF>
#include <QString>
#include <optional>

// Label templates: the sheet a run of mailing labels is printed on. Measures are
// inches from the paper's top-left corner.
namespace Labels {

enum class Paper { Letter, A4 };

struct Template
{
    qint64 id = 0;   // 0: not saved yet
    QString description;
    double height = 0;
    double width = 0;
    double topMargin = 0;
    double sideMargin = 0;
    double verticalPitch = 0;
    double horizontalPitch = 0;
    int numberAcross = 0;
    int numberDown = 0;
    bool isDefault = false;
    Paper paper = Paper::Letter;

    int perSheet() const { return numberAcross * numberDown; }
};

QString paperName(Paper paper);   // "Letter" / "A4", as stored
std::optional<Paper> paperFromName(const QString &name);
QPageSize pageSize(Paper paper);
QSizeF paperInches(Paper paper);

// Why a template cannot print: the column of the measure at fault and a sentence
// for the user. An empty text means the template is sound.
struct Problem
{
    QString column;
    QString text;
    bool ok() const { return text.isEmpty(); }
};
Problem validate(const Template &t);

// The rows of LabelDetails, by description. Throw TmError when the database fails.
QList<Template> loadTemplates();
// The default template, else the first by description; none when there are none.
std::optional<Template> defaultTemplate(const QList<Template> &templates);
// By exact name (ignoring case), else the one name containing the text.
std::optional<Template> findTemplate(const QList<Template> &templates, const QString &name);

// Writes a template (a new row when id is 0, setting id). Marking it default takes
// the mark off every other. False with *error when the name is taken by another.
bool saveTemplate(Template &t, QString *error);
void deleteTemplate(qint64 id);

}   // namespace Labels
