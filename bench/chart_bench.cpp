#include <QImage>
#include <QPainter>

#include "ui/chart/chart_painter.h"
#include "window_bench.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kLabels = 255;
constexpr int kRows = 30;
constexpr int kRuns = 5;

ChartTable LargeTable() {
    ChartTable table;
    table.Title = u"お住まいの地区はどちらですか"_s;
    table.IsPercent = true;
    for (int i = 0; i < kLabels; ++i)
        table.Labels << u"第%1地区（旧市街とその周り）"_s.arg(i + 1);
    for (int row = 0; row < kRows; ++row) {
        ChartTable::Row values{u"条件%1"_s.arg(row + 1), {}};
        for (int i = 0; i < kLabels; ++i)
            values.Values.push_back((i * 7919 + row * 104729) % 1000 / 12.5);
        table.Rows.push_back(values);
    }
    return table;
}

}  // namespace

void MeasureChart() {
    const ChartTable table = LargeTable();
    for (int kind = 0; kind <= static_cast<int>(ChartKind::Step3d); ++kind)
        for (const bool stacked : {false, true}) {
            QImage image(1280, 800, QImage::Format_RGB32);
            std::vector<double> figures;
            for (int run = 0; run < kRuns; ++run) {
                QPainter painter(&image);
                figures.push_back(Milliseconds([&] {
                    PaintChart(painter, image.rect(), table, {static_cast<ChartKind>(kind), stacked},
                               ChartLook::Paper(QFont()));
                }));
            }
            const QString name = u"chart of 255 by 30, kind %1%2"_s.arg(kind).arg(stacked ? u", stacked"_s : QString());
            Print(qUtf8Printable(name), figures, "ms");
        }
}

}  // namespace quibra
