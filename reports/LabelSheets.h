#pragma once

#include "LabelLayout.h"

#include <QFont>
#include <QPageLayout>

class QPagedPaintDevice;

// Draws planned label sheets on a printer or a PDF file: each label's lines in the
// chosen font, 1/16 in inside the label's edges, shortened to fit so that no text
// runs into the next label.
namespace LabelSheets {

struct Sheets
{
    Labels::Template sheet;
    QList<Labels::LabelPage> pages;
    QFont font;
    bool outlines = false;   // also draw every label's outline, to check a template against a sheet
};

// The template's paper, portrait, no margins: positions are from the paper's corner.
QPageLayout pageLayout(const Labels::Template &sheet);

struct Result
{
    bool ok = false;
    QString error;
    int shortened = 0;   // labels with a line cut short or left out because it did not fit
};

Result render(const Sheets &sheets, QPagedPaintDevice *device);
Result writePdf(const Sheets &sheets, const QString &path);

// The family and size the text is drawn in, "Arial, 10"; and whether the family
// asked for is installed (else the closest installed one stands in).
QString fontText(const QFont &font);
bool fontInstalled(const QFont &font);

}   // namespace LabelSheets
