// A chart as a picture or a document, black on white.
#pragma once

#include <QByteArray>
#include <QFont>
#include <QImage>
#include <QSizeF>

#include "ui/chart/chart_painter.h"

namespace quibra {

struct ChartPicture {
    const ChartTable& table;
    ChartStyle style;
    QFont font;
    QSizeF size = {960, 640};  // in pixels of 1/96 inch
};

// `scale` pixels of the image to each of the picture's.
QImage ChartImage(const ChartPicture& picture, double scale);
QByteArray ChartPng(const ChartPicture& picture);
// Its texts are texts; all of the table stands in its description.
QByteArray ChartSvg(const ChartPicture& picture);
// What a reader who sees no picture is told: every row with its labels and values.
QString ChartDescription(const ChartTable& table);
// One page of the picture's size.
QByteArray ChartPdf(const ChartPicture& picture);
// A file of the kind that the suffix of `path` names: svg, png or pdf; run-time error 5 for any other.
void WriteChartFile(const QString& path, const ChartPicture& picture);

}  // namespace quibra
