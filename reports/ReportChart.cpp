#include "ReportChart.h"

#include "ReportStyle.h"

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QGraphicsScene>
#include <QHorizontalBarSeries>
#include <QPainter>
#include <QPieSeries>
#include <QValueAxis>

namespace ReportChart {
namespace {

// Charts are laid out at screen scale (96 to the inch) and scaled onto the page.
// Their fonts are sized in pixels of that scale, so the device's resolution cannot change them.
constexpr double chartDpi = 96.0;

QFont chartFont(double points, bool bold = false)
{
    QFont f(ReportStyle::family());
    f.setPixelSize(qRound(points * chartDpi / 72.0));
    f.setBold(bold);
    return f;
}

void fillBars(QChart &chart, const Report::Block &block)
{
    auto *set = new QBarSet(block.chartTitle);
    set->setColor(QColor(70, 110, 160));
    set->setLabelColor(Qt::black);
    set->setLabelFont(chartFont(8));
    QStringList categories;
    qint64 highest = 0;
    // The first item at the top, as in the table above the chart.
    for (auto it = block.chartItems.crbegin(); it != block.chartItems.crend(); ++it) {
        categories << it->first;
        *set << double(it->second);
        highest = std::max(highest, it->second);
    }
    auto *series = new QHorizontalBarSeries;
    series->append(set);
    series->setLabelsVisible(true);
    series->setLabelsPosition(QAbstractBarSeries::LabelsOutsideEnd);
    series->setLabelsFormat(QStringLiteral("@value"));
    series->setLabelsPrecision(12);
    series->setBarWidth(0.7);
    chart.addSeries(series);

    auto *names = new QBarCategoryAxis;
    names->append(categories);
    names->setLabelsFont(chartFont(8));
    chart.addAxis(names, Qt::AlignLeft);
    series->attachAxis(names);
    auto *counts = new QValueAxis;
    // Room beyond the longest bar for its label; whole numbers only.
    counts->setRange(0, std::max<qint64>(1, highest + highest / 8 + 1));
    counts->setLabelFormat(QStringLiteral("%d"));
    counts->setLabelsFont(chartFont(8));
    counts->applyNiceNumbers();
    chart.addAxis(counts, Qt::AlignBottom);
    series->attachAxis(counts);
    chart.legend()->hide();
}

void fillPie(QChart &chart, const Report::Block &block)
{
    auto *series = new QPieSeries;
    qint64 total = 0;
    for (const auto &item : block.chartItems)
        total += item.second;
    for (const auto &item : block.chartItems) {
        if (item.second <= 0)
            continue;
        QPieSlice *slice = series->append(QStringLiteral("%1: %2 (%3%)")
                                              .arg(item.first)
                                              .arg(item.second)
                                              .arg(QString::number(100.0 * double(item.second) / double(total), 'f', 1)),
                                          double(item.second));
        slice->setLabelFont(chartFont(8));
    }
    series->setPieSize(0.75);
    chart.addSeries(series);
    chart.legend()->setAlignment(Qt::AlignRight);
    chart.legend()->setFont(chartFont(8));
}

}   // namespace

void draw(QPainter &painter, const QRectF &target, const Report::Block &block, double dpi)
{
    const QSizeF size = target.size() * (chartDpi / dpi);
    QGraphicsScene scene;
    auto *chart = new QChart;   // the scene owns it
    scene.addItem(chart);
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setBackgroundVisible(false);
    chart->setTitle(block.chartTitle);
    chart->setTitleFont(chartFont(10, true));
    if (block.pie)
        fillPie(*chart, block);
    else
        fillBars(*chart, block);
    chart->setGeometry(QRectF(QPointF(0, 0), size));
    scene.setSceneRect(QRectF(QPointF(0, 0), size));
    scene.render(&painter, target, scene.sceneRect(), Qt::KeepAspectRatio);
}

}   // namespace ReportChart
