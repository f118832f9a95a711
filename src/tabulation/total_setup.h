// The set-up of totals behind its window: what its controls hold, how they follow each other, and the record that a
// total is started with. A choice in a list is its index, as the record has it.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "core/user_interface.h"
#include "tabulation/total_option.h"

namespace quibra {

class TotalSetup {
  public:
    // Takes a condition to the user and brings it back as they left it; false when they want nothing of it.
    using LimitPicker = std::function<bool(LimitList&)>;

    // Starts as a simple total of question 0. `survey` and `ui` must outlive it.
    TotalSetup(const Survey& survey, UserInterface& ui, LimitPicker editLimit);

    // What the controls hold that no other follows.
    QString Nname;
    TotalKindValue page = kTable;
    int toQno = 0;
    int rank = 0;
    bool rough = false;
    int limitRow = 0;  // the selected one of LimitRows, in front of which a condition is added
    int essayCno = 0;
    int essayRank = 0;
    bool require = false;  // the essay list is without an essay condition

    // The questions of a table begin with q, and end with it until toQno is set.
    void SelectQuestion(int q);
    int FromQno() const { return fromQno_; }

    // Each of these makes the individual conditions anew.
    void SelectCross(CrossModeValue mode);
    void SelectCrossQuestion(int q);
    CrossModeValue Cross() const { return cross_; }
    int CrossQno() const { return crossQno_; }

    // The individual conditions in words and the closing row behind them. Those who change them by hand cross by free
    // conditions from then on, with the rows that stand there.
    QStringList LimitRows() const;
    // Run-time error 9, before anything is asked, when there are kMaxLimitColumns of them already.
    void AddLimit();
    void ChangeLimit();
    void DeleteLimit();

    QString WholeLimitText() const;
    void EditWholeLimit();
    void SetWholeLimit(const LimitList& list);

    void SelectEssayQuestion(int q);
    int EssayQno() const { return essayQno_; }

    // kEssayAny, kEssayFilled or kEssayEmpty; or, with a dialog that asks for what it wants, a detail of kEssayFilled:
    // kEssayHolds, kEssayNumber or kEssayCode. A dialog that is cancelled leaves the values as they are, and a number
    // too large (run-time error 6) does, too.
    void SelectEssayCondition(EssayConditionValue condition);
    // Asks again for the values of the detail, if one is selected.
    void AskEssayDetail();
    EssayConditionValue EssayCondition() const { return essayCondition_; }
    // The detail selected last, even while another condition is; kEssayFilled when none is.
    EssayConditionValue EssayDetail() const { return essayDetail_; }
    QString EssayDetailText() const;

    // The lists that the controls show beside the questions.
    QStringList RankRows(int q) const;
    QStringList EssayChoiceRows() const;

    // The record for a total of the given kind.
    const TotalOption& BuildOption(TotalKindValue kind);
    // Takes a record over, as far as it fits the survey: it may come from a file.
    void SetTotalOption(const TotalOption& option);

    // A condition has been written that no total knows.
    bool HasUnused() const { return wroteWhole_ || wroteColumns_; }
    // True when it is all right to leave, or to take the options of a result over; asks when that would lose one.
    bool MayDiscard();
    bool MayReplace();

  private:
    bool AskToLose(const QString& question);
    void ResetLimitList();
    QString ColumnText(int column) const;
    bool EditColumn(int column);
    void SetColumn(int column, LimitColumn lines);
    void ClearColumn(int column);
    void AskNumbers();
    void AskCodes();
    void ShowTable(const TotalOption& option);
    void ShowEssayList(const TotalOption& option);
    bool IsQuestion(int q) const { return q >= 0 && q < survey_.QuestionCount; }
    bool HasRank(int q, int n) const { return n >= 0 && n <= survey_.Questions[q].Anum; }

    const Survey& survey_;
    UserInterface& ui_;
    LimitPicker editLimit_;
    TotalOption option_;  // its Limits are what LimitRows shows
    int limitCount_ = 1;  // of the page of tables; LimitCount of an essay list is 1
    // Conditions that no total has used since.
    bool wroteWhole_ = false;
    bool wroteColumns_ = false;
    int fromQno_ = 0;
    CrossModeValue cross_ = kCrossFree;
    int crossQno_ = 0;
    int essayQno_ = 0;
    EssayConditionValue essayCondition_ = kEssayAny;
    EssayConditionValue essayDetail_ = kEssayFilled;
    // What was last asked for; the record takes of it what its CrossMode needs.
    QString essayText_;
    double numLow_ = 0;
    double numHigh_ = 0;
    QString codeLow_;
    QString codeHigh_;
};

}  // namespace quibra
