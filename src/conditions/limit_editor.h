// The rules of the condition editor, without its window: the lines being edited as its list shows them, what may be
// written where, and what becomes of them at the close. Works on the session's survey and speaks to its user; the
// session must outlive it.
//
// Two jobs. The slot editor changes the survey's predefined conditions, each line at once. The picker edits a copy of
// a caller's list, which holds the result once Close has run.
//
// The rows of the list are a heading, the lines, and a closing row; a new line goes in front of the selected row. Rows
// and lines can part: a refused から leaves a line doubled, and a line of kind 0 without a rank ends the list for all
// its readers. Both stay out of sight until the list is shown anew.
#pragma once

#include <functional>

#include "core/labels.h"
#include "session/survey_session.h"

namespace quibra {

// What a picker offers besides lines.
inline constexpr qint16 kPickPreLimits = -1;  // predefined conditions
inline constexpr qint16 kPickLines = 0;       // nothing
inline constexpr qint16 kPickForCross = 3;    // an explanation of what a cross total makes of the list

class LimitEditor {
  public:
    // Question, choice and rank that the next line is made of.
    struct Choosers {
        int question = -1;  // -1: none
        int choice = -1;
        int rank = 0;  // 0: any
    };

    // The slot editor, at slot 0.
    explicit LimitEditor(SurveySession& session);
    // A picker for lines 0 to 15 of `list`; `mode` is one of the above.
    LimitEditor(SurveySession& session, const LimitList& list, qint16 mode);

    bool IsPicker() const { return picker_; }
    bool OffersPreLimits() const { return picker_ && mode_ == kPickPreLimits; }
    bool ExplainsCross() const { return picker_ && mode_ == kPickForCross; }

    // The choosers' lists, and what is chosen. A new question takes its first real choice and no rank.
    QStringList Questions() { return RefreshQuestionList(session_.survey, 0); }
    QStringList ChoicesOfQuestion() const;
    QStringList FillRankCombo() const;
    const Choosers& Chosen() const { return chosen_; }
    void SelectQuestion(int q);
    void SelectChoice(int c) { chosen_.choice = c; }
    void SelectRank(int rank) { chosen_.rank = rank; }

    // The list of lines. Selecting the row of a line puts that line into the choosers.
    const QStringList& Rows() const { return rows_; }
    int Row() const { return row_; }
    void SelectRow(int row);
    // The row in front of which AddLimitLine inserts, from 1.
    int InsertionRow() const { return std::max(row_, 1); }

    // Writes the chosen line as one of `kind` (companion/limit_terms.h), or tells why not.
    void AddLimitLine(int kind);
    void DeleteLine();
    void ClearLines();

    // The predefined conditions in words, by slot.
    const QStringList& PreLimitRows() const { return preLimitRows_; }
    // Slot editor: the slot whose lines are shown.
    int Slot() const { return slot_; }
    void SelectSlot(int k);
    bool PreChanged(int k) const { return preChanged_[k]; }
    // Picker: which slots the condition includes.
    bool IsPicked(int k) const { return (limitWork_[0].b >> k) & 1; }
    void Pick(int k, bool on);

    // Hands the picked list over, or tests all samples against the slots that have changed and marks the survey as
    // changed. `show` gets the share of that work done so far, in per cent, whenever its text changes.
    void Close(const std::function<void(const QString&)>& show);
    // Picker: the caller's list, as it was until Close.
    const LimitList& LimitPass() const { return limitPass_; }
    // True when it is all right to leave a picker without Close; asks when that would lose lines.
    bool MayDiscard();

  private:
    LimitEditor(SurveySession& session, const LimitList& list, qint16 mode, bool picker);

    bool IsLineRow(int row) const { return row >= 1 && row < rows_.size() - 1; }
    void ShowLimitLines();
    bool CheckRange(int pos, int& kind, int& choice);
    void CommitPreLimit();
    QString PreLimitText(int k) const;
    void RefreshPreLimitBits(int k, const std::function<void(const QString&)>& show);

    SurveySession& session_;
    bool picker_;
    qint16 mode_;
    LimitList limitPass_;
    LimitList limitWork_;
    Choosers chosen_;
    QStringList rows_;
    int row_ = 0;
    QStringList preLimitRows_;
    int slot_ = 0;
    BoundedArray<bool, kPreLimitSlots> preChanged_;
    bool touched_ = false;
};

}  // namespace quibra
