// Fixed arrays whose subscripts are checked: an index out of bounds is run-time error 9, never a stray write.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "core/runtime_error.h"

namespace quibra {

inline void CheckSubscript(qint64 index, qint64 count) {
    if (index < 0 || index >= count) throw RuntimeError(kErrorSubscript);
}

// Elements 0 to N - 1.
template <typename T, int N>
class BoundedArray {
  public:
    T& operator[](int index) {
        CheckSubscript(index, N);
        return elements_[index];
    }
    const T& operator[](int index) const {
        CheckSubscript(index, N);
        return elements_[index];
    }
    T* Data() { return elements_.data(); }
    const T* Data() const { return elements_.data(); }
    static constexpr int Size() { return N; }
    void Fill(const T& value) { elements_.fill(value); }

  private:
    std::array<T, N> elements_{};
};

// A table of Rows by Columns, held column by column, so that a column is one run of memory.
template <typename T, int Rows, int Columns>
class BoundedTable {
  public:
    T& operator()(int row, int column) {
        Check(row, column);
        return elements_[column * Rows + row];
    }
    const T& operator()(int row, int column) const {
        Check(row, column);
        return elements_[column * Rows + row];
    }
    std::span<T, Rows> Column(int column) {
        CheckSubscript(column, Columns);
        return std::span<T, Rows>(elements_.data() + column * Rows, Rows);
    }
    std::span<const T, Rows> Column(int column) const {
        CheckSubscript(column, Columns);
        return std::span<const T, Rows>(elements_.data() + column * Rows, Rows);
    }

  private:
    static void Check(int row, int column) {
        CheckSubscript(row, Rows);
        CheckSubscript(column, Columns);
    }

    std::vector<T> elements_ = std::vector<T>(Rows * Columns);
};

}  // namespace quibra
