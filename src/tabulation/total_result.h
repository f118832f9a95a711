// What a total has found: plain data, apart from the run that fills it (TotalRun) and from the cells that show it
// (TotalSheet). Files, pages and charts are made from it. Words are made from the survey it was counted in, which may
// have become another one meanwhile: what no longer fits is run-time error 9.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "core/bounded_array.h"
#include "core/survey.h"
#include "tabulation/total_option.h"

namespace quibra {

inline constexpr int kFirstTableRow = 1;  // rows are those of a grid with one fixed row
inline constexpr int kMaxTableRows = 1999;
inline constexpr int kMaxEssayRows = 9999;
// A block's rows from its first one on: heading, whole limit, individual limit, its choices, persons, a blank row.
inline constexpr int kWholeLimitRow = 1;
inline constexpr int kLimitRow = 2;
inline constexpr int kFirstChoiceRow = 3;
inline constexpr int kRowsBesideChoices = 5;

// One value by limit and grid row; run-time error 9 outside.
template <typename T>
class LimitRows {
  public:
    // All zero.
    void Reset(int limits, int rows) {
        rows_ = rows;
        values_.assign(static_cast<size_t>(limits) * static_cast<size_t>(rows), T{});
    }
    T& operator()(int L, int row) { return values_[Place(L, row)]; }
    const T& operator()(int L, int row) const { return values_[Place(L, row)]; }

  private:
    size_t Place(int L, int row) const {
        CheckSubscript(row, rows_);
        CheckSubscript(L, static_cast<qint64>(values_.size()) / rows_);
        return static_cast<size_t>(L) * static_cast<size_t>(rows_) + static_cast<size_t>(row);
    }

    int rows_ = 0;
    std::vector<T> values_;
};

// One answer of an essay list.
struct EssayRow {
    qint32 Dno;
    qint32 IDno;
    qint16 Cno;
    QString Choice;
    QString Essay;
    QStringList Refs;  // with the first row of a sample only
};

struct TotalResult {
    TotalOption option;       // as totalled: ToQno is the last question that fitted
    bool chkTotaled = false;  // what stands below is the result of `option`
    bool chkSorted = false;   // the rows of each block stand sorted
    QString ExLimitText;      // the whole limit

    // A table.
    BoundedArray<qint16, kMaxQuestions + 1> RowStart;  // FromQno to ToQno + 1
    LimitRows<qint32> Counts;
    LimitRows<qint16> RowCode;  // the row's choice, PackPosition(q, c); negative in rows without one
    QStringList LimitTexts;     // of each individual limit

    // An essay list.
    std::vector<int> RefQno;  // questions whose answers stand beside each sample's first row
    std::vector<EssayRow> EssayRows;
    double EssaySum = 0;   // of the numbers in them
    qint32 FromDno = 0;    // where the list starts; behind a continued list, where it goes on
    bool HasNext = false;  // a continuation can be asked for
    qint32 EssayCursor = 0;

    double EssayAverage() const;  // over all listed rows, numeric or not; 0 without rows

    // The samples of an essay list as a walk: its length (1 for a list without rows), back to its start, and the next
    // sample's place, -1 past the end.
    qint32 EssayDnoCount() const;
    void EssayDnoReset() { EssayCursor = 0; }
    qint32 EssayDno();
    // The same walk as a list: the places that an export or a batch works on. A sample stands once for each of its
    // rows.
    std::vector<qint32> Places() const;
};

// The rows of question q that bear figures, under limit L: its choices in the order they stand, then the total row with
// the persons and the sum of the rounded shares.
struct BlockRow {
    qint16 RowCode;
    qint32 Figure;
    float Share;
};
std::vector<BlockRow> BlockRows(const Survey& survey, const TotalResult& result, int q, int L);

// The words of a block: its heading, with the rank where one is counted, and the label of its row i under limit L.
QString BlockHeading(const Survey& survey, const TotalResult& result, int q);
QString RowLabel(const Survey& survey, const TotalResult& result, int L, int q, int i);

}  // namespace quibra
