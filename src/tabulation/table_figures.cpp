#include "tabulation/table_figures.h"

#include <cmath>
#include <numeric>
#include <utility>

namespace quibra {

std::vector<int> RowOrder(const std::vector<qint32>& figures, bool sorted) {
    const size_t count = figures.size();
    std::vector<int> order(count);
    std::iota(order.begin(), order.end(), 1);
    if (count > 0) order.back() = 0;
    if (!sorted) return order;
    const auto figure = [&](size_t place) { return figures[static_cast<size_t>(order[place])]; };
    // The swap carries equal figures past each other; a stable sort would give another order.
    for (size_t i = 0; i < count; ++i) {
        size_t best = i;
        for (size_t j = i; j < count; ++j)
            if (figure(best) < figure(j)) best = j;
        std::swap(order[i], order[best]);
    }
    return order;
}

float PercentColumn::Add(qint32 figure) {
    if (persons_ <= 0) return 0;
    const float share = static_cast<float>(static_cast<double>(figure) / persons_);
    const float thousandths = share * 1000;
    const float rounded = static_cast<float>(std::floor(static_cast<double>(thousandths) + 0.5) / 1000);
    sum_ += rounded;
    return rounded;
}

QString PercentText(float share) {
    return QString::number(static_cast<double>(share) * 100, 'f', 1) + u'%';
}

}  // namespace quibra
