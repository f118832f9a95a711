// Checks of a sample's answers against the rules of its questions. What breaks a rule is repaired by the policy of
// CorrectFlags, never refused. Typed sheets, the rewrite after a change of the questionnaire and the batch add share
// them, in this order: CorrectAnswers on the working form, then the store, then CheckAllLimits, which reads and writes
// the stored sample.
#pragma once

#include <QString>

#include "core/answer_store.h"

namespace quibra {

// Bits of Survey::CorrectFlags: what is done with an answer that breaks a rule.
enum CorrectFlag {
    kOtherForNoChoice = 1,  // an absent choice becomes その他 where there is one; clear: 無回答
    kOtherForNoEssay = 2,   // a text on a choice that bears none takes its answer to その他; clear: the text goes
    kDropExclusive = 4,     // of answers mixed with an exclusive one that one goes; clear: it alone stays
    kClearUnlimited = 8,    // an answer that the question's condition forbids goes; clear: its condition is met instead
    kAskForID = 16,         // not a check's: the entry window asks for the ID of a new sample
};

// Who is told what a check found. A check without one is silent.
class CorrectionNotice {
  public:
    virtual ~CorrectionNotice() = default;
    // The message reads `head`, the answer's symbol in parentheses, `tail`. The symbol stands on the sheet from `pos`
    // (counted from 1) over `len` characters; either is 0 where the answer doesn't stand on it.
    virtual void ShowCorrection(const QString& head, const QString& tail, int pos, int len) = 0;
};

// One question's answers in the arrays of a WorkingSample, or in a caller's own: Cno and Essay have room for
// max(count, 1) answers. The rest moves with them and may be null.
struct QuestionAnswers {
    qint16 count;
    qint16* Cno;
    QString* Essay;
    qint32* EssayID = nullptr;
    qint16* Pos = nullptr;
    qint16* Len = nullptr;
};

// The smallest choice from 1 on that is その他; -1 when the question has none.
int FirstOtherChoice(const Survey& survey, int q);

// The four checks on one question: its choices exist, texts stand where they may, answers don't repeat (only looked at
// with `repeats`), exclusive answers stand alone. Leaves at least one answer, 0 when nothing stays. True when it
// changed an answer or a text.
bool CorrectQuestion(const Survey& survey, int q, QuestionAnswers& answers, bool repeats, CorrectionNotice* notice);

// CorrectQuestion for all questions, with the slots closed up behind each other; a question without answers gets a slot
// with 0. Run-time error 9 when the slots don't suffice.
bool CorrectAnswers(const Survey& survey, WorkingSample& working, bool repeats, CorrectionNotice* notice);

// An answer of the stored sample to a question that its condition forbids: it is cleared, or the question that the
// condition begins with is answered so that it is met, if it isn't answered yet. A condition whose first line names an
// absent answer can't be met that way, and the answer stays. `pos` and `len` tell where the question's first answer
// stands on the sheet. True when the sample was changed.
bool CheckLimit(Survey& survey, qint32 dno, int q, CorrectionNotice* notice, int pos = 0, int len = 0);

// CheckLimit for all questions. `working` is what was stored, for the places on the sheet; it is only looked at with a
// notice.
bool CheckAllLimits(Survey& survey, qint32 dno, const WorkingSample& working, CorrectionNotice* notice);

// All checks on a stored sample; `working` is only for their use. True when the sample was changed. Where there are
// many samples see entry/answer_scan.h.
bool CheckSample(Survey& survey, qint32 dno, WorkingSample& working, bool repeats, CorrectionNotice* notice);

}  // namespace quibra
