// The question editor without its window: edits of questions and choices while samples exist.
//
// Edits go to the survey itself. Answers are stored by the numbers of questions and choices, so every edit of the
// structure is kept in two maps from the numbers at the opening to the present ones, and Finish writes all samples anew
// by them. Until then the definition as it was lies in a bank, and Cancel brings it back.
//
// A window shows the rows, texts and states below, enables a control by the matching Can..., calls the edit of its
// event and shows everything anew behind each call. Edits that a window would not have offered do nothing, silently.
// A run-time error (see core/attempt.h) leaves the survey as it was before the call. While Finish or an assignment of
// codes runs, events run too: the window then leaves nothing enabled but its Cancel, see IsBusy.
//
// Session and windows must outlive the editor. One that is destroyed without Finish or Cancel takes all edits back.
#pragma once

#include <functional>

#include "core/limit_list.h"
#include "design/definition_bank.h"
#include "design/renumbering.h"
#include "session/unfinished_edit.h"

namespace quibra {

// The windows that open from the editor's, and the one thing that it shows by itself.
class DefinitionWindows {
  public:
    virtual ~DefinitionWindows() = default;

    // 回答補正: stores what is chosen in the survey's CorrectFlags; false on Cancel, which leaves them alone.
    virtual bool ChooseCorrection() = 0;
    // The condition editor as a picker of lines.
    virtual LimitList EditLimit(const LimitList& list) = 0;
    // How far a rewrite is, for the button 終了: "0%" to "100%", and its own caption again at the end.
    virtual void ShowProgress(const QString& caption) = 0;
};

enum class EditorOutcome {
    Open,    // the user goes on editing
    Done,    // the window closes
    Broken,  // the window closes on a survey that may not be saved any more: its rewrite was stopped
};

class DefinitionEditor : private UnfinishedEdit {
  public:
    DefinitionEditor(SurveySession& session, DefinitionWindows& windows);
    ~DefinitionEditor() override;
    DefinitionEditor(const DefinitionEditor&) = delete;
    DefinitionEditor& operator=(const DefinitionEditor&) = delete;

    // The tree of questions, with the row that appends at its end; the choices of the selected question. A selection
    // may stand one behind the last question or choice; a new question selects its first real choice.
    QStringList QuestionRows() const;
    QStringList ChoiceRows() const;
    int Question() const { return question_; }
    int Choice() const { return choice_; }
    void SelectQuestion(int row);
    void SelectChoice(int row);
    bool HasQuestion() const { return question_ < survey_.QuestionCount; }
    // A real one, not 無回答.
    bool HasChoice() const;

    // Some edit needs the samples rewritten; questions or choices were inserted or deleted.
    bool IsChanged() const { return changed_; }
    bool IsQCChanged() const { return structureChanged_; }
    // Where the questions and choices that the survey had at the opening are now.
    const StructureMaps& Maps() const { return maps_; }
    // The next edit of the kind that needs a rewrite will ask.
    bool WillAsk() const { return !changed_ && survey_.SampleCount() >= 1; }
    // The gate before such an edit: asks, unless there is nothing to rewrite or a rewrite is due already.
    bool ConfirmRewrite();

    // Name, body and limit text of the question, by part 0 to 2. Line ends in a text that is set become blanks.
    QString QuesText(int part) const;
    void SetQuesText(int part, const QString& text);
    QString ChoiceText() const;
    void SetChoiceText(const QString& text);

    bool CanDeleteQuestion() const { return HasQuestion() && survey_.QuestionCount != 1; }
    bool CanInsertChoice() const;
    bool CanDeleteChoice() const;
    void InsertQuestion();
    void DeleteQuestion();
    void InsertChoice();
    void DeleteChoice();
    // Each line of `text` becomes a choice in front of the selected one, as long as there is room. `goOn` is called
    // behind each; false stops. REQUIRES: ConfirmRewrite has passed.
    void AddChoices(const QString& text, const std::function<bool()>& goOn);
    // A pasted column of cells: its lines fill the empty choices from the selected one on, what is left is added as
    // above, behind the gate.
    void PasteChoices(const QString& text, const std::function<bool()>& goOn);

    int Anum() const;
    int MostAnswers() const;
    // REQUIRES: ConfirmRewrite has passed. Takes numbers from 1 to MostAnswers.
    void SetAnum(int anum);
    int LabelKind() const;
    // Falls back to kind 0 where the question has more choices than the kind has symbols.
    void SetLabelKind(int kind);

    // The place in the hierarchy, which is nothing but the question's condition.
    bool CanMoveUp() const { return HasQuestion() && survey_.QLimit(1, question_).a != 0; }
    bool CanMoveDown() const { return HasQuestion() && question_ > 0; }
    void MoveUp();
    void MoveDown();
    void EditLimit();
    QString LimitInWords() const;

    // A click on a status box; boxes that depend on it follow. False where the box must be put back.
    bool Status(int index) const;
    bool SetStatus(int index, bool on);
    // Sets 複数選択 on every choice as on the selected one.
    void ApplyMultipleToAll();
    // The two ways of 割り付け, and the way back to plain texts. Rewrites the stored texts at once, outside of Cancel;
    // nothing while a rewrite is due.
    enum class CodeMode { ByCode = 1, ByWord = 2, NameAlone = 3 };
    void ReassignCode(int q, int c, CodeMode mode);

    // Runs the rewrite. Broken when it was stopped; a run-time error leaves the editor open, its edits and the samples
    // as they were.
    EditorOutcome Finish();
    // Takes all edits back, when the user agrees. While a rewrite runs: stops it, when the user agrees.
    EditorOutcome Cancel();
    bool IsBusy() const { return work_ != Work::None; }

  private:
    enum class Work { None, Rewriting, Committing, Reassigning, SetAside };

    bool SetAside() noexcept override;
    void TakeUp() noexcept override;
    void Close();

    void InsertEmptyQuestion(int choices);
    void CopyQuestion(int source);
    void InsertEmptyChoice();
    void EditConditions(const std::function<void()>& edit);
    void PickLimit(bool mayBeEmpty);
    void AskRange(ChoiceRec& choice);
    void ChooseCodeTable();
    void ReplaceOther();
    void RemoveCode();
    void Rewrite();
    bool ShowProgress(qint32 done, qint32 count);
    void ResetLineTable();

    SurveySession& session_;
    Survey& survey_;
    UserInterface& ui_;
    DefinitionWindows& windows_;
    DefinitionBank loaded_;
    StructureMaps maps_;
    int question_ = 0;
    int choice_ = 1;
    bool changed_ = false;
    bool structureChanged_ = false;
    bool closed_ = false;
    Work work_ = Work::None;
    bool stopped_ = false;
    int shownPercent_ = -1;
};

}  // namespace quibra
