// The lines of the answer sheet, as the window that edits them shows them: every answer of every question in order, and
// before each that begins a line a row of that line. Works on the survey, which must outlive it; rows are made anew by
// Refresh, which whoever changes the survey by other ways calls.
#pragma once

#include <QString>
#include <vector>

#include "core/survey.h"

namespace quibra {

class LineLayout {
  public:
    explicit LineLayout(Survey& survey) : survey_(survey) { Refresh(); }

    enum class Kind { Line, Answer, End };
    struct Row {
        Kind kind;
        int line;  // the line that begins here, or the one in which the answer lies
        int q;
        int a;
    };

    void Refresh();
    int RowCount() const { return static_cast<int>(rows_.size()); }
    const Row& At(int row) const { return rows_.at(static_cast<size_t>(row)); }
    QString Text(int row) const;

    // The row of line `line`, or of answer `a` of question `q`; -1 when there is none. All from 0.
    int RowOfLine(int line) const;
    int RowOfAnswer(int q, int a) const;

    // What can be done to a row; false for one that is not there.
    bool CanInsert(int row) const { return Is(row, Kind::Answer); }
    bool CanRemove(int row) const { return Is(row, Kind::Line) && At(row).line > 0; }
    bool CanFlag(int row) const { return Is(row, Kind::Line); }
    bool IsFlagged(int row) const { return CanFlag(row) && survey_.LineFlag[At(row).line]; }

    // Begins a line at the answer of this row, whose row then stands here. False when nothing happens: the table is
    // full, or a line begins there already, since two equal entries would end the table for all who read it.
    bool Insert(int row);
    // Joins the line of this row to the one before; its flag goes too. False when it can't be removed.
    bool Remove(int row);
    // Whether the survey's program is called when the typing has reached the line.
    void SetFlag(int row, bool on);

  private:
    bool Is(int row, Kind kind) const { return row >= 0 && row < RowCount() && At(row).kind == kind; }

    Survey& survey_;
    std::vector<Row> rows_;
};

}  // namespace quibra
