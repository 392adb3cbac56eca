#include "LabelLayout.h"

namespace Labels {

QStringList labelLines(const Address &a, bool namesOnly)
{
    const QString last = a.lastName.trimmed();
    const QString given = (a.firstName.trimmed() + QLatin1Char(' ') + a.middleInitial.trimmed()).trimmed();
    const QString name = last.isEmpty() ? given : given.isEmpty() ? last : last + QStringLiteral(", ") + given;
    QStringList lines {name};
    if (!namesOnly) {
        const QString city = a.city.trimmed();
        const QString stateZip = (a.state.trimmed() + QLatin1Char(' ') + a.zipCode.trimmed()).trimmed();
        lines << a.address.trimmed() << (city.isEmpty() ? stateZip : stateZip.isEmpty() ? city : city + QStringLiteral(", ") + stateZip);
    }
    lines.removeAll(QString());
    return lines;
}

QRectF labelRect(const Template &t, int position)
{
    const int index = position - 1;
    const int column = index % t.numberAcross;
    const int row = index / t.numberAcross;
    return QRectF((t.sideMargin + column * t.horizontalPitch) * PointsPerInch, (t.topMargin + row * t.verticalPitch) * PointsPerInch,
                  t.width * PointsPerInch, t.height * PointsPerInch);
}

QList<LabelPage> layoutLabels(const Template &t, const QList<QStringList> &labels, int startPosition, int copies)
{
    QList<LabelPage> pages;
    const int perSheet = t.perSheet();
    if (perSheet < 1 || startPosition < 1 || startPosition > perSheet || copies < 1)
        return pages;
    int slot = startPosition - 1;   // counted over the whole run, from the first sheet's top left
    for (const QStringList &lines : labels)
        for (int copy = 0; copy < copies; ++copy, ++slot) {
            const int sheet = slot / perSheet;
            const int position = slot % perSheet + 1;
            if (sheet == pages.size())
                pages.append(LabelPage());
            pages.last().append({position, labelRect(t, position), lines});
        }
    return pages;
}

}   // namespace Labels
