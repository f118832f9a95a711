// The value axis of a chart: from 0 in round steps to a round end.
#pragma once

#include <QString>

namespace quibra {

struct ChartAxis {
    double Step = 1;
    int Steps = 1;

    double Top() const { return Step * Steps; }
    QString Text(int step, bool isPercent) const;
};

// Reaches `highest` in at most `most` steps of 1, 2 or 5 times a power of ten; whole ones for persons.
ChartAxis RoundAxis(double highest, bool isPercent, int most);

// A value as it stands in a chart: "12.5%" or "120".
QString ChartValueText(double value, bool isPercent);

}  // namespace quibra
