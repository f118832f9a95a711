#include "ui/chart/chart_axis.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// What sums of shares may lie beside the round number that they mean.
constexpr double kSlack = 1e-6;

// The smallest round number from `least` on.
double RoundStep(double least) {
    const double power = std::pow(10, std::floor(std::log10(least)));
    for (const double digit : {1.0, 2.0, 5.0})
        if (digit * power >= least * (1 - kSlack)) return digit * power;
    return 10 * power;
}

}  // namespace

QString ChartAxis::Text(int step, bool isPercent) const {
    const double value = Step * step;
    if (!isPercent) return QLocale(QLocale::Japanese).toString(value, 'f', 0);
    const int decimals = std::max(0, -static_cast<int>(std::floor(std::log10(Step) + kSlack)));
    return QString::number(value, 'f', decimals) + u'%';
}

ChartAxis RoundAxis(double highest, bool isPercent, int most) {
    if (highest <= 0) return isPercent ? ChartAxis{20, 5} : ChartAxis{1, 1};
    most = std::max(most, 1);
    double step = RoundStep(highest / most);
    if (!isPercent) step = std::max(step, 1.0);
    return {step, std::max(1, static_cast<int>(std::ceil(highest / step - kSlack)))};
}

QString ChartValueText(double value, bool isPercent) {
    return isPercent ? QString::number(value, 'f', 1) + u'%' : NumberText(value);
}

}  // namespace quibra
