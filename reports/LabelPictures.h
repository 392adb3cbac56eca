#pragma once

#include "LabelTemplates.h"

#include <QWidget>

// The sheet in miniature (picPreview): one shape per label, numbered; the labels
// before the start position are drawn as used. A click on a label chooses it.
class LabelSheetPicture : public QWidget
{
    Q_OBJECT

public:
    explicit LabelSheetPicture(QWidget *parent = nullptr);

    void LoadLabelPreview(const Labels::Template &sheet);
    void setStartPosition(int position);
    // The label under a point of the widget, 0 when none.
    int positionAt(const QPointF &point) const;
    QRectF shapeOf(int position) const;

    QSize sizeHint() const override { return {170, 210}; }

Q_SIGNALS:
    void positionClicked(int position);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QRectF paperRect() const;

    Labels::Template m_sheet;
    bool m_loaded = false;
    int m_start = 1;
};

// The legend of the setup window (picLegend): two rows of two labels on the
// corner of a sheet, with what each measure spans.
class LabelLegendPicture : public QWidget
{
    Q_OBJECT

public:
    explicit LabelLegendPicture(QWidget *parent = nullptr);
    QSize sizeHint() const override { return {260, 230}; }

protected:
    void paintEvent(QPaintEvent *event) override;
};
