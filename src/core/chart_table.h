// What a chart shows, as a plain record: the tabulation fills it and the chart painter draws it.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace quibra {

struct ChartTable {
    // One value a label, none below 0.
    struct Row {
        QString Name;
        std::vector<double> Values;
    };

    QString Title;
    QStringList Labels;
    std::vector<Row> Rows;
    bool IsPercent = false;  // values are shares of 100; otherwise they are persons
};

}  // namespace quibra
