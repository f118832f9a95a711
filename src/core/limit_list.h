// A working list of condition lines: what is tested, joined and told in words.
#pragma once

#include <span>

#include "companion/quibra.h"
#include "core/bounded_array.h"

// Beside the type itself, where the standard algorithms find it.
inline bool operator==(const LimitLine& x, const LimitLine& y) {
    return x.a == y.a && x.b == y.b;
}

namespace quibra {

// Lines 0 to 15 of a question's condition, a predefined condition or a column of a total. Line 0 is a header.
using LimitColumn = std::span<const LimitLine, 16>;

// Element 0 is the header, whose `b` is the mask of predefined conditions; lines 1 to Bound() follow. A list ends at
// its first line with `a` 0 or behind line Bound(); the element behind that always closes it, as the companion library
// wants.
class LimitList {
  public:
    static constexpr int kMaxBound = 48;  // three columns joined

    explicit LimitList(int bound = 15) : bound_(bound) { CheckSubscript(bound, kMaxBound + 1); }
    explicit LimitList(LimitColumn column) : LimitList() { std::copy(column.begin(), column.end(), lines_.begin()); }

    int Bound() const { return bound_; }
    LimitLine& operator[](int index) {
        CheckSubscript(index, bound_ + 1);
        return lines_[index];
    }
    const LimitLine& operator[](int index) const {
        CheckSubscript(index, bound_ + 1);
        return lines_[index];
    }
    const LimitLine* Data() const { return lines_.data(); }
    // Lines in front of the closing one.
    int LineCount() const;

  private:
    int bound_;
    std::array<LimitLine, kMaxBound + 2> lines_{};
};

inline int LimitList::LineCount() const {
    int count = 0;
    while (count < bound_ && lines_[count + 1].a != 0)
        ++count;
    return count;
}

}  // namespace quibra
