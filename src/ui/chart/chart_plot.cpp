#include "ui/chart/chart_plot.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "ui/chart/chart_look.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

double ValueOf(const ChartTable& table, int row, int label) {
    const std::vector<double>& values = table.Rows[static_cast<size_t>(row)].Values;
    const double value = static_cast<size_t>(label) < values.size() ? values[static_cast<size_t>(label)] : 0;
    return std::isfinite(value) ? std::max(value, 0.0) : 0;
}

// The `most` labels with the largest values in the first `rows` rows, in their order.
std::vector<int> LargestLabels(const ChartTable& table, int rows, int most) {
    std::vector<int> labels(static_cast<size_t>(table.Labels.size()));
    std::iota(labels.begin(), labels.end(), 0);
    if (static_cast<int>(labels.size()) <= most) return labels;
    std::vector<double> sums(labels.size());
    for (size_t i = 0; i < sums.size(); ++i)
        for (int row = 0; row < rows; ++row)
            sums[i] += ValueOf(table, row, static_cast<int>(i));
    std::ranges::stable_sort(labels,
                             [&](int a, int b) { return sums[static_cast<size_t>(a)] > sums[static_cast<size_t>(b)]; });
    labels.resize(static_cast<size_t>(std::max(most, 0)));
    std::ranges::sort(labels);
    return labels;
}

}  // namespace

double ChartPlot::Below(int series, int category) const {
    double sum = 0;
    for (int s = 0; s < series; ++s)
        sum += At(s, category);
    return sum;
}

double ChartPlot::Highest() const {
    double highest = 0;
    for (int i = 0; i < Count(); ++i) {
        if (Stacked) highest = std::max(highest, Below(SeriesCount(), i));
        for (int s = 0; !Stacked && s < SeriesCount(); ++s)
            highest = std::max(highest, At(s, i));
    }
    return highest;
}

ChartPlot PlotByLabel(const ChartTable& table, int mostSeries, int mostCategories) {
    ChartPlot plot;
    plot.IsPercent = table.IsPercent;
    const int rowCount = static_cast<int>(table.Rows.size());
    const int rows = std::min(rowCount, mostSeries);
    const std::vector<int> labels = LargestLabels(table, rows, mostCategories);
    for (const int label : labels)
        plot.Categories << table.Labels[label];
    for (int row = 0; row < rows; ++row) {
        PlotSeries series{table.Rows[static_cast<size_t>(row)].Name, {}, row % kChartColors};
        for (const int label : labels)
            series.Values.push_back(ValueOf(table, row, label));
        plot.Series.push_back(std::move(series));
    }
    if (rows < rowCount) plot.Notes << u"条件は最初の%1個を示しています（ほか%2個）。"_s.arg(rows).arg(rowCount - rows);
    const qsizetype left = table.Labels.size() - plot.Count();
    if (left > 0) plot.Notes << u"値の大きい%1項目を示しています（ほか%2項目）。"_s.arg(plot.Count()).arg(left);
    return plot;
}

ChartPlot PlotByRow(const ChartTable& table, int mostSeries, int mostCategories) {
    ChartPlot plot;
    plot.IsPercent = table.IsPercent;
    plot.Stacked = true;
    const int rowCount = static_cast<int>(table.Rows.size());
    const int rows = std::min(rowCount, mostCategories);
    for (int row = 0; row < rows; ++row)
        plot.Categories << table.Rows[static_cast<size_t>(row)].Name;
    const int labelCount = static_cast<int>(table.Labels.size());
    const bool all = labelCount <= mostSeries;
    const std::vector<int> labels = LargestLabels(table, rows, all ? labelCount : mostSeries - 1);
    PlotSeries rest{u"ほか%1項目"_s.arg(labelCount - static_cast<int>(labels.size())), {}, kRestColor};
    for (int row = 0; row < rows; ++row) {
        double sum = 0;
        for (int label = 0; label < labelCount; ++label)
            sum += std::ranges::binary_search(labels, label) ? 0 : ValueOf(table, row, label);
        rest.Values.push_back(sum);
    }
    for (const int label : labels) {
        PlotSeries series{table.Labels[label], {}, static_cast<int>(plot.Series.size()) % kChartColors};
        for (int row = 0; row < rows; ++row)
            series.Values.push_back(ValueOf(table, row, label));
        plot.Series.push_back(std::move(series));
    }
    if (!all) {
        plot.Notes << u"値の小さい%1項目は「ほか」にまとめています。"_s.arg(labelCount -
                                                                            static_cast<int>(labels.size()));
        plot.Series.push_back(std::move(rest));
    }
    if (rows < rowCount) plot.Notes << u"条件は最初の%1個を示しています（ほか%2個）。"_s.arg(rows).arg(rowCount - rows);
    return plot;
}

}  // namespace quibra
