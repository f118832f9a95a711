// What of a chart's table is drawn: places on the axis, and series of values over them that each have a colour.
#pragma once

#include <QStringList>
#include <vector>

#include "core/chart_table.h"

namespace quibra {

struct PlotSeries {
    QString Name;
    std::vector<double> Values;  // one a category
    int Color = 0;
};

struct ChartPlot {
    QStringList Categories;
    std::vector<PlotSeries> Series;
    QStringList Notes;  // what has been left out
    bool IsPercent = false;
    bool Stacked = false;

    int Count() const { return static_cast<int>(Categories.size()); }
    int SeriesCount() const { return static_cast<int>(Series.size()); }
    double At(int series, int category) const {
        return Series[static_cast<size_t>(series)].Values[static_cast<size_t>(category)];
    }
    // The sum of what lies below a series, at a category.
    double Below(int series, int category) const;
    // The highest point that is drawn.
    double Highest() const;
};

// A place for each label, a series for each row: the first `mostSeries` of them, and the labels with the largest
// values, in their own order.
ChartPlot PlotByLabel(const ChartTable& table, int mostSeries, int mostCategories);
// A place for each row, a series for each label; those with the smallest values go together into one.
ChartPlot PlotByRow(const ChartTable& table, int mostSeries, int mostCategories);

}  // namespace quibra
