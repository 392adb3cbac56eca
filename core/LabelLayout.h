#pragma once

#include "LabelTemplates.h"

#include <QList>
#include <QRectF>
#include <QStringList>

// Where each label of a run lands: pure arithmetic on a template, in points
// (72 an inch) from the paper's top-left corner, so that the printed position does
// not depend on the printer's resolution.
namespace Labels {

constexpr double PointsPerInch = 72.0;
constexpr int MaxCopies = 1000;

// One client's name and address as the label shows them.
struct Address
{
    QString lastName;
    QString firstName;
    QString middleInitial;
    QString address;
    QString city;
    QString state;
    QString zipCode;
};

// The label's lines: "Last, First M", the street address, "City, ST Zip"; the name
// alone when namesOnly. Lines with nothing on them are left out.
QStringList labelLines(const Address &a, bool namesOnly);

// The rectangle of a position (1 = top left, counted across each row, then down).
QRectF labelRect(const Template &t, int position);

struct PlacedLabel
{
    int position = 0;
    QRectF rect;   // points
    QStringList lines;
};
using LabelPage = QList<PlacedLabel>;

// The sheets of a run: the first label at startPosition on the first sheet, each
// client's lines copies times in consecutive positions, later sheets from position 1.
// The template must be sound, startPosition within the sheet and copies at least 1.
QList<LabelPage> layoutLabels(const Template &t, const QList<QStringList> &labels, int startPosition, int copies);

}   // namespace Labels
