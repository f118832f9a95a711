// How a table is shown.
#pragma once

#include <QtGlobal>

namespace quibra {

struct TotalView {
    enum Percent { CountsOnly = 0, CountsAndPercent = 1, PercentOnly = 2 };
    Percent percent = CountsAndPercent;
    bool sort = false;
    bool space = true;

    bool ShowsCounts() const { return percent != PercentOnly; }
    bool ShowsPercent() const { return percent != CountsOnly; }

    // Low two bits 1 counts, 3 both, 2 percent; 4 sorted; 8 with blank columns.
    qint16 Flags() const;
};

}  // namespace quibra
