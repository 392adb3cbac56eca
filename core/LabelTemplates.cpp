#include "LabelTemplates.h"

#include "TmError.h"
#include "Transaction.h"
#include "basDatabase.h"

#include <QCoreApplication>

namespace Labels {

namespace {

// Labels may reach this close to the paper's edge, and overlap by this much, before
// a template is refused: a few thousandths of an inch are rounding, not a fault.
constexpr double Tolerance = 0.005;
constexpr double SmallestLabel = 0.1;

QString tr(const char *text)
{
    return QCoreApplication::translate("Labels", text);
}

QString inches(double value)
{
    return QString::number(value, 'f', 2);
}

Problem problem(const char *column, const QString &text)
{
    return {QString::fromLatin1(column), text};
}

// The measure to blame when a row or column of labels runs off the paper: the
// margin when a single label already does not fit, else the pitch.
Problem pastTheEdge(double margin, double pitch, int count, double size, double paper, const char *marginColumn, const char *pitchColumn,
                    const QString &marginName, const QString &pitchName, const QString &edge, Paper kind)
{
    const double end = margin + (count - 1) * pitch + size;
    if (end <= paper + Tolerance)
        return {};
    const bool oneFits = margin + size <= paper + Tolerance;
    return problem(oneFits && count > 1 ? pitchColumn : marginColumn,
                   tr("The %1 is too large: the labels would run %2 in past the %3 edge of the %4 paper (%5 x %6 in).")
                       .arg(oneFits && count > 1 ? pitchName : marginName, inches(end - paper), edge, paperName(kind),
                            inches(paperInches(kind).width()), inches(paperInches(kind).height())));
}

Template fromQuery(const QSqlQuery &q)
{
    Template t;
    t.id = q.value(QStringLiteral("ID")).toLongLong();
    t.description = q.value(QStringLiteral("Description")).toString();
    t.height = q.value(QStringLiteral("Height")).toDouble();
    t.width = q.value(QStringLiteral("Width")).toDouble();
    t.topMargin = q.value(QStringLiteral("TopMargin")).toDouble();
    t.sideMargin = q.value(QStringLiteral("SideMargin")).toDouble();
    t.verticalPitch = q.value(QStringLiteral("VerticalPitch")).toDouble();
    t.horizontalPitch = q.value(QStringLiteral("HorizontalPitch")).toDouble();
    t.numberAcross = q.value(QStringLiteral("NumberAcross")).toInt();
    t.numberDown = q.value(QStringLiteral("NumberDown")).toInt();
    t.isDefault = q.value(QStringLiteral("Default")).toBool();
    t.paper = paperFromName(q.value(QStringLiteral("PaperSize")).toString()).value_or(Paper::Letter);
    return t;
}

}   // namespace

QString paperName(Paper paper)
{
    return paper == Paper::A4 ? QStringLiteral("A4") : QStringLiteral("Letter");
}

std::optional<Paper> paperFromName(const QString &name)
{
    if (name.compare(QLatin1String("Letter"), Qt::CaseInsensitive) == 0)
        return Paper::Letter;
    if (name.compare(QLatin1String("A4"), Qt::CaseInsensitive) == 0)
        return Paper::A4;
    return std::nullopt;
}

QPageSize pageSize(Paper paper)
{
    return QPageSize(paper == Paper::A4 ? QPageSize::A4 : QPageSize::Letter);
}

QSizeF paperInches(Paper paper)
{
    return pageSize(paper).size(QPageSize::Inch);
}

Problem validate(const Template &t)
{
    if (t.description.trimmed().isEmpty())
        return problem("Description", tr("A template name is required."));
    if (t.numberAcross < 1)
        return problem("NumberAcross", tr("Number Across must be at least 1."));
    if (t.numberDown < 1)
        return problem("NumberDown", tr("Number Down must be at least 1."));
    const struct
    {
        const char *column;
        const char *name;
        double value;
    } margins[] = {{"TopMargin", QT_TRANSLATE_NOOP("Labels", "Top Margin"), t.topMargin},
                   {"SideMargin", QT_TRANSLATE_NOOP("Labels", "Side Margin"), t.sideMargin},
                   {"VerticalPitch", QT_TRANSLATE_NOOP("Labels", "Vertical Pitch"), t.verticalPitch},
                   {"HorizontalPitch", QT_TRANSLATE_NOOP("Labels", "Horizontal Pitch"), t.horizontalPitch}};
    for (const auto &m : margins)
        if (m.value < 0)
            return problem(m.column, tr("%1 cannot be negative.").arg(tr(m.name)));
    if (t.height < SmallestLabel)
        return problem("Height", tr("Label Height must be at least %1 in.").arg(inches(SmallestLabel)));
    if (t.width < SmallestLabel)
        return problem("Width", tr("Label Width must be at least %1 in.").arg(inches(SmallestLabel)));
    if (t.numberAcross > 1 && t.width > t.horizontalPitch + Tolerance)
        return problem("HorizontalPitch",
                       tr("The Horizontal Pitch (%1 in) is less than the Label Width (%2 in): the labels of a row would overlap.")
                           .arg(inches(t.horizontalPitch), inches(t.width)));
    if (t.numberDown > 1 && t.height > t.verticalPitch + Tolerance)
        return problem("VerticalPitch",
                       tr("The Vertical Pitch (%1 in) is less than the Label Height (%2 in): the rows of labels would overlap.")
                           .arg(inches(t.verticalPitch), inches(t.height)));
    const QSizeF paper = paperInches(t.paper);
    if (Problem p = pastTheEdge(t.sideMargin, t.horizontalPitch, t.numberAcross, t.width, paper.width(), "SideMargin", "HorizontalPitch",
                                tr("Side Margin"), tr("Horizontal Pitch"), tr("right"), t.paper);
        !p.ok())
        return p;
    return pastTheEdge(t.topMargin, t.verticalPitch, t.numberDown, t.height, paper.height(), "TopMargin", "VerticalPitch", tr("Top Margin"),
                       tr("Vertical Pitch"), tr("bottom"), t.paper);
}

QList<Template> loadTemplates()
{
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT * FROM LabelDetails ORDER BY Description"));
    QList<Template> list;
    while (q.next())
        list << fromQuery(q);
    return list;
}

std::optional<Template> defaultTemplate(const QList<Template> &templates)
{
    for (const Template &t : templates)
        if (t.isDefault)
            return t;
    if (templates.isEmpty())
        return std::nullopt;
    return templates.constFirst();
}

std::optional<Template> findTemplate(const QList<Template> &templates, const QString &name)
{
    const QString wanted = name.trimmed();
    std::optional<Template> containing;
    int found = 0;
    for (const Template &t : templates) {
        if (t.description.compare(wanted, Qt::CaseInsensitive) == 0)
            return t;
        if (!wanted.isEmpty() && t.description.contains(wanted, Qt::CaseInsensitive)) {
            containing = t;
            ++found;
        }
    }
    return found == 1 ? containing : std::nullopt;
}

bool saveTemplate(Template &t, QString *error)
{
    const QString name = t.description.trimmed();
    if (basDatabase::ScalarValue(QStringLiteral("SELECT COUNT(*) FROM LabelDetails WHERE Description = ? AND ID <> ?"), {name, t.id})
            .toInt()
        > 0) {
        *error = tr("There is already a template named '%1'.").arg(name);
        return false;
    }
    Transaction transaction(basDatabase::Connection());
    const QVariantList values = {name,
                                 t.height,
                                 t.width,
                                 t.topMargin,
                                 t.sideMargin,
                                 t.verticalPitch,
                                 t.horizontalPitch,
                                 t.numberAcross,
                                 t.numberDown,
                                 t.isDefault ? 1 : 0,
                                 paperName(t.paper)};
    if (t.id == 0) {
        const QSqlQuery q = basDatabase::Execute(
            QStringLiteral("INSERT INTO LabelDetails (Description, Height, Width, TopMargin, SideMargin, VerticalPitch, HorizontalPitch, "
                           "NumberAcross, NumberDown, \"Default\", PaperSize) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
            values);
        t.id = q.lastInsertId().toLongLong();
    } else {
        basDatabase::Execute(
            QStringLiteral("UPDATE LabelDetails SET Description = ?, Height = ?, Width = ?, TopMargin = ?, SideMargin = ?, "
                           "VerticalPitch = ?, HorizontalPitch = ?, NumberAcross = ?, NumberDown = ?, \"Default\" = ?, "
                           "PaperSize = ? WHERE ID = ?"),
            QVariantList(values) << t.id);
    }
    if (t.isDefault)
        basDatabase::Execute(QStringLiteral("UPDATE LabelDetails SET \"Default\" = 0 WHERE ID <> ? AND \"Default\" <> 0"), {t.id});
    if (transaction.active() && !transaction.commit())
        throw TmError(-1, transaction.error());
    t.description = name;
    return true;
}

void deleteTemplate(qint64 id)
{
    basDatabase::Execute(QStringLiteral("DELETE FROM LabelDetails WHERE ID = ?"), {id});
}

}   // namespace Labels
