// The arithmetic of a table's rows: their order and their percentages.
#pragma once

#include <QString>
#include <vector>

namespace quibra {

// The choices of a question in the order of its rows, given the figure of each choice: 1, 2, ..., and 0 last, or by
// figure, largest first, by the exchange sort whose treatment of equal figures the program has always shown.
std::vector<int> RowOrder(const std::vector<qint32>& figures, bool sorted);

// Rounded shares of `persons`, one figure after the other, and the sum of the rounded shares. All in 32-bit floats.
class PercentColumn {
  public:
    explicit PercentColumn(qint32 persons) : persons_(persons) {}
    float Add(qint32 figure);
    float Sum() const { return sum_; }

  private:
    qint32 persons_;
    float sum_ = 0;
};

// "##0.0%": 0.6 is "60.0%".
QString PercentText(float share);

}  // namespace quibra
